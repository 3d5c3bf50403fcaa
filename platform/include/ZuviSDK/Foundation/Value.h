#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/Date.h>
#include <ZuviSDK/Foundation/URL.h>

#include <concepts>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace zuvi {

/// Something that can be put into a `Value` only as its description.
class DescribedObject {
public:
  virtual ~DescribedObject() = default;
  /// One line; what `Value::description` gives.
  virtual std::string description() const = 0;
};

/// A value of any type that this system passes through untyped doors: JSON, metadata, event
/// properties, messages. A boolean is never a number.
class Value {
public:
  /// Values in their order.
  using List = std::vector<Value>;
  /// Values by key.
  using Dictionary = std::map<std::string, Value>;

  /// Without an argument or from a null pointer: null. Everything else keeps its type; whole
  /// numbers become 64 bits wide, signed or unsigned.
  /// @{
  Value() = default;
  Value(std::nullptr_t) {}
  template <std::same_as<bool> T> Value(T boolean) : value_(boolean) {}
  template <std::signed_integral T> Value(T number) : value_(std::int64_t{number}) {}
  template <std::unsigned_integral T>
  requires(!std::same_as<T, bool>) Value(T number) : value_(std::uint64_t{number}) {}
  Value(float number) : value_(number) {}
  Value(double number) : value_(number) {}
  Value(const char* text) {
    if (text) value_ = std::string(text);
  }
  Value(std::string text) : value_(std::move(text)) {}
  Value(List list) : value_(std::move(list)) {}
  Value(Dictionary dictionary) : value_(std::move(dictionary)) {}
  Value(Date date) : value_(date) {}
  Value(URL url) : value_(std::move(url)) {}
  Value(std::shared_ptr<const DescribedObject> object) {
    if (object) value_ = std::move(object);
  }
  /// @}
  /// An absent optional becomes null.
  template <class T>
  Value(const std::optional<T>& optional) : Value(optional ? Value(*optional) : Value()) {}

  /// Whether it holds nothing.
  bool isNull() const { return std::holds_alternative<std::monostate>(value_); }
  /// Whether `number` gives one.
  bool isNumber() const;

  /// A pointer into this value, or null when it is of another type.
  /// @{
  const bool* boolean() const { return std::get_if<bool>(&value_); }
  const std::string* string() const { return std::get_if<std::string>(&value_); }
  const List* list() const { return std::get_if<List>(&value_); }
  List* list() { return std::get_if<List>(&value_); }
  const Dictionary* dictionary() const { return std::get_if<Dictionary>(&value_); }
  const Date* date() const { return std::get_if<Date>(&value_); }
  const URL* url() const { return std::get_if<URL>(&value_); }
  /// @}

  /// Any number as a double; absent for everything else, booleans included.
  ZUVI_API std::optional<double> number() const;
  /// The list as strings, when it is a list and each element is a string.
  std::optional<std::vector<std::string>> listOfStrings() const;
  /// The list as dictionaries, when it is a list and each element is a dictionary.
  std::optional<std::vector<Dictionary>> listOfDictionaries() const;

  /// Text form: a string is its own text, a number its decimal form; lists and dictionaries are
  /// written out in brackets.
  ZUVI_API std::string description() const;

  /// Of the same type and equal: 1 and 1.0 differ.
  bool operator==(const Value&) const = default;

  /// @cond
  using Storage =
      std::variant<std::monostate, bool, std::int64_t, std::uint64_t, float, double, std::string,
                   List, Dictionary, Date, URL, std::shared_ptr<const DescribedObject>>;
  const Storage& storage() const { return value_; }
  /// @endcond

private:
  Storage value_;
};

/// The entry of that key as a string; absent when there is none or it is of another type.
std::optional<std::string> stringValue(const Value::Dictionary& dictionary, const std::string& key);
/// The entry of that key; null pointer when there is none.
const Value* valueForKey(const Value::Dictionary& dictionary, const std::string& key);

} // namespace zuvi
