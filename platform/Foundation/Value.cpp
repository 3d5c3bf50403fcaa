#include <ZuviSDK/Foundation/Value.h>

namespace zuvi {

bool Value::isNumber() const {
  return number().has_value();
}

std::optional<double> Value::number() const {
  if (const auto* n = std::get_if<std::int64_t>(&value_)) return static_cast<double>(*n);
  if (const auto* n = std::get_if<std::uint64_t>(&value_)) return static_cast<double>(*n);
  if (const auto* n = std::get_if<float>(&value_)) return *n;
  if (const auto* n = std::get_if<double>(&value_)) return *n;
  return std::nullopt;
}

std::optional<std::vector<std::string>> Value::listOfStrings() const {
  if (!list()) return std::nullopt;
  std::vector<std::string> strings;
  for (const auto& element : *list()) {
    if (!element.string()) return std::nullopt;
    strings.push_back(*element.string());
  }
  return strings;
}

std::optional<std::vector<Value::Dictionary>> Value::listOfDictionaries() const {
  if (!list()) return std::nullopt;
  std::vector<Dictionary> dictionaries;
  for (const auto& element : *list()) {
    if (!element.dictionary()) return std::nullopt;
    dictionaries.push_back(*element.dictionary());
  }
  return dictionaries;
}

std::optional<std::string> stringValue(const Value::Dictionary& dictionary,
                                       const std::string& key) {
  const Value* value = valueForKey(dictionary, key);
  return value && value->string() ? std::optional(*value->string()) : std::nullopt;
}

const Value* valueForKey(const Value::Dictionary& dictionary, const std::string& key) {
  const auto entry = dictionary.find(key);
  return entry == dictionary.end() ? nullptr : &entry->second;
}

} // namespace zuvi
