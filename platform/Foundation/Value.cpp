#include "platform/Foundation/ValueStorage.h"

namespace zuvi {

namespace {

template <class T> std::shared_ptr<Value::Storage> hold(T content) {
  return std::make_shared<Value::Storage>(Value::Storage{std::move(content)});
}

} // namespace

Value::Value(Boolean boolean) : storage_(hold(boolean == Boolean{true})) {}
Value::Value(Signed number) : storage_(hold(static_cast<std::int64_t>(number))) {}
Value::Value(Unsigned number) : storage_(hold(static_cast<std::uint64_t>(number))) {}
Value::Value(float number) : storage_(hold(number)) {}
Value::Value(double number) : storage_(hold(number)) {}
Value::Value(const char* text) : storage_(text ? hold(std::string(text)) : nullptr) {}
Value::Value(std::string text) : storage_(hold(std::move(text))) {}
Value::Value(List list) : storage_(hold(std::move(list))) {}
Value::Value(Dictionary dictionary) : storage_(hold(std::move(dictionary))) {}
Value::Value(Date date) : storage_(hold(date)) {}
Value::Value(URL url) : storage_(hold(std::move(url))) {}
Value::Value(std::shared_ptr<const DescribedObject> object)
    : storage_(object ? hold(std::move(object)) : nullptr) {}

const Value::Storage& Value::storage() const {
  static const Storage null;
  return storage_ ? *storage_ : null;
}

const bool* Value::boolean() const {
  return std::get_if<bool>(&storage().content);
}

const std::string* Value::string() const {
  return std::get_if<std::string>(&storage().content);
}

const Value::List* Value::list() const {
  return std::get_if<List>(&storage().content);
}

const Value::Dictionary* Value::dictionary() const {
  return std::get_if<Dictionary>(&storage().content);
}

const Date* Value::date() const {
  return std::get_if<Date>(&storage().content);
}

const URL* Value::url() const {
  return std::get_if<URL>(&storage().content);
}

Value::List* Value::mutableList() {
  if (!list()) return nullptr;
  if (storage_.use_count() > 1) storage_ = std::make_shared<Storage>(*storage_);
  return std::get_if<List>(&storage_->content);
}

bool Value::operator==(const Value& other) const {
  return storage_ == other.storage_ || storage().content == other.storage().content;
}

std::optional<double> Value::number() const {
  const auto& content = storage().content;
  if (const auto* n = std::get_if<std::int64_t>(&content)) return static_cast<double>(*n);
  if (const auto* n = std::get_if<std::uint64_t>(&content)) return static_cast<double>(*n);
  if (const auto* n = std::get_if<float>(&content)) return *n;
  if (const auto* n = std::get_if<double>(&content)) return *n;
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
