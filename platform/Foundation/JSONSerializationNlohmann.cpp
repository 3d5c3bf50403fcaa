#include "platform/Foundation/JSONSerialization.h"

#include "platform/Foundation/ValueStorage.h"

#include <charconv>
#include <cmath>
#include <new>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace zuvi {

namespace {

using nlohmann::json;

// Builds the value from the parser's events. The open containers stand on an explicit stack, so the
// depth of the input is limited here and not by the thread's stack.
class ValueBuilder final : public nlohmann::json_sax<json> {
public:
  explicit ValueBuilder(const JSONSerialization::Limits& limits) : limits_(limits) {}

  std::optional<Value> result;

  bool null() override { return add({}); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(number_integer_t value) override { return add(value); }
  bool number_unsigned(number_unsigned_t value) override {
    return std::in_range<std::int64_t>(value) ? add(static_cast<std::int64_t>(value)) : add(value);
  }
  bool number_float(number_float_t value, const string_t&) override { return add(value); }
  bool string(string_t& value) override { return add(std::move(value)); }
  bool binary(binary_t&) override { return false; }
  bool start_object(std::size_t) override { return open(Value::Dictionary()); }
  bool start_array(std::size_t) override { return open(Value::List()); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool key(string_t& name) override {
    open_.back().key = std::move(name);
    return true;
  }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override {
    return false;
  }

private:
  struct Container {
    std::variant<Value::List, Value::Dictionary> elements;
    std::string key; // of the entry that comes next
  };

  bool open(std::variant<Value::List, Value::Dictionary> empty) {
    if (open_.size() == limits_.depth) return false;
    open_.push_back({std::move(empty), {}});
    return true;
  }

  bool close() {
    Container container = std::move(open_.back());
    open_.pop_back();
    return std::visit([this](auto& elements) { return add(std::move(elements)); },
                      container.elements);
  }

  bool add(Value value) {
    if (count_++ == limits_.values) return false;
    if (open_.empty())
      result = std::move(value);
    else if (auto* list = std::get_if<Value::List>(&open_.back().elements))
      list->push_back(std::move(value));
    else
      std::get<Value::Dictionary>(open_.back().elements)
          .insert_or_assign(std::move(open_.back().key), std::move(value));
    return true;
  }

  const JSONSerialization::Limits limits_;
  std::size_t count_ = 0;
  std::vector<Container> open_;
};

bool isWritable(const Value& value, std::size_t depth) {
  if (const auto* list = value.list()) {
    if (depth == JSONSerialization::usualDepth) return false;
    for (const auto& element : *list)
      if (!isWritable(element, depth + 1)) return false;
    return true;
  }
  if (const auto* dictionary = value.dictionary()) {
    if (depth == JSONSerialization::usualDepth) return false;
    for (const auto& [key, element] : *dictionary)
      if (!isWritable(element, depth + 1)) return false;
    return true;
  }
  if (const auto number = value.number()) return std::isfinite(*number);
  return value.isNull() || value.boolean() || value.string();
}

// A whole number goes out without a fraction, whatever holds it.
json asWritten(double number) {
  constexpr double limit = 0x1p63;
  const bool whole = std::trunc(number) == number && std::abs(number) < limit;
  return whole ? json(static_cast<std::int64_t>(number)) : json(number);
}

// The double that is written with the digits of the float: 0.1 and not 0.10000000149.
json asWritten(float number) {
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  double result = number;
  std::from_chars(digits, end, result);
  return asWritten(result);
}

struct Converter {
  json operator()(std::monostate) const { return nullptr; }
  json operator()(float number) const { return asWritten(number); }
  json operator()(double number) const { return asWritten(number); }
  json operator()(const Value::List& list) const {
    json result = json::array();
    for (const auto& element : list)
      result.push_back(std::visit(*this, element.storage().content));
    return result;
  }
  json operator()(const Value::Dictionary& dictionary) const {
    json result = json::object();
    for (const auto& [key, element] : dictionary)
      result[key] = std::visit(*this, element.storage().content);
    return result;
  }
  // Not reached: `isWritable` has refused them.
  json operator()(const Date&) const { return nullptr; }
  json operator()(const URL&) const { return nullptr; }
  json operator()(const std::shared_ptr<const DescribedObject>&) const { return nullptr; }
  template <class Plain> json operator()(const Plain& value) const { return value; }
};

} // namespace

std::optional<Value> JSONSerialization::jsonObject(std::string_view bytes, Fragments fragments,
                                                   const Limits& limits) {
  // The parser takes a zero byte for the end of the input.
  if (bytes.find('\0') != std::string_view::npos) return std::nullopt;
  ValueBuilder builder(limits);
  try {
    if (!json::sax_parse(bytes.begin(), bytes.end(), &builder)) return std::nullopt;
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
  const auto& value = builder.result;
  if (value && fragments == Fragments::Refuse && !value->list() && !value->dictionary())
    return std::nullopt;
  return std::move(builder.result);
}

bool JSONSerialization::isValidJSONObject(const Value& value) {
  return (value.list() || value.dictionary()) && isWritable(value, 0);
}

std::optional<Data> JSONSerialization::data(const Value& value) {
  if (!isValidJSONObject(value)) return std::nullopt;
  try {
    return Data(std::visit(Converter{}, value.storage().content).dump());
  } catch (const json::exception&) { // a text that is not UTF-8
    return std::nullopt;
  }
}

} // namespace zuvi
