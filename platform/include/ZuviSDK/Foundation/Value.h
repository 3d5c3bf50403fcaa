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
#include <vector>

namespace zuvi {

/// Something that can be put into a `Value` only as its description.
class DescribedObject {
public:
  virtual ~DescribedObject() = default;
  /// One line; what `Value::description` gives.
  virtual std::string description() const = 0;
};

/// A value of any type that this system passes on without knowing it: JSON, metadata, event
/// properties, messages. Copies share their contents, which never change. A boolean is never a
/// number. Any thread.
class ZUVI_API Value {
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
  template <std::same_as<bool> T> Value(T boolean) : Value(Boolean(boolean)) {}
  template <std::signed_integral T> Value(T number) : Value(Signed(number)) {}
  template <std::unsigned_integral T>
  requires(!std::same_as<T, bool>) Value(T number) : Value(Unsigned(number)) {}
  Value(float number);
  Value(double number);
  Value(const char* text);
  Value(std::string text);
  Value(List list);
  Value(Dictionary dictionary);
  Value(Date date);
  Value(URL url);
  Value(std::shared_ptr<const DescribedObject> object);
  /// @}
  /// An absent optional becomes null.
  template <class T>
  Value(const std::optional<T>& optional) : Value(optional ? Value(*optional) : Value()) {}

  /// Whether it holds nothing.
  bool isNull() const { return !storage_; }
  /// Whether `number` gives one.
  bool isNumber() const { return number().has_value(); }

  /// A pointer to the contents, or null when they are of another type. Valid as long as this value
  /// or a copy of it lives.
  /// @{
  const bool* boolean() const;
  const std::string* string() const;
  const List* list() const;
  const Dictionary* dictionary() const;
  const Date* date() const;
  const URL* url() const;
  /// @}

  /// Any number as a double; absent for everything else, booleans included.
  std::optional<double> number() const;
  /// The list as strings, when it is a list and each element is a string.
  ZUVI_HIDDEN std::optional<std::vector<std::string>> listOfStrings() const;
  /// The list as dictionaries, when it is a list and each element is a dictionary.
  ZUVI_HIDDEN std::optional<std::vector<Dictionary>> listOfDictionaries() const;

  /// Text form: a string is its own text, a number its decimal form; lists and dictionaries are
  /// written out in brackets.
  std::string description() const;

  /// Of the same type and equal: 1 and 1.0 differ.
  bool operator==(const Value& other) const;

  /// @cond
  struct Storage; // ValueStorage.h
  ZUVI_HIDDEN const Storage& storage() const;
  // The list to add to; null when it is no list. Copies keep what they hold.
  ZUVI_HIDDEN List* mutableList();
  /// @endcond

private:
  // So that the constructors above take no other type by conversion.
  enum class Boolean : bool {};
  enum class Signed : std::int64_t {};
  enum class Unsigned : std::uint64_t {};
  explicit Value(Boolean boolean);
  explicit Value(Signed number);
  explicit Value(Unsigned number);

  std::shared_ptr<Storage> storage_;
};

/// The entry of that key as a string; absent when there is none or it is of another type.
ZUVI_HIDDEN std::optional<std::string> stringValue(const Value::Dictionary& dictionary,
                                                   const std::string& key);
/// The entry of that key; null pointer when there is none.
ZUVI_HIDDEN const Value* valueForKey(const Value::Dictionary& dictionary, const std::string& key);

} // namespace zuvi
