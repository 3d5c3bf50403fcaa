#include "kit/Helper/ZVLocalization.h"

#include "kit/Helper/ZVBundle.h"
#include "platform/Foundation/Locale.h"
#include "platform/Foundation/PropertyList.h"

#include <algorithm>
#include <utility>

namespace zuvi {

namespace {

std::function<ZVLanguage()>& languageSource() {
  static std::function<ZVLanguage()> source;
  return source;
}

ZVLanguage textLanguage() {
  return languageSource() ? languageSource()() : ZVLanguage::english;
}

} // namespace

void setTextLanguage(std::function<ZVLanguage()> language) {
  languageSource() = std::move(language);
}

ZVLocalizationManager::ZVLocalizationManager(const std::optional<std::string>& path) {
  const auto list = path ? propertyListFromFile(*path) : std::nullopt;
  if (list && list->dictionary()) plist_ = *list->dictionary();
}

ZVLocalizationManager& ZVLocalizationManager::shared() {
  static auto* instance = new ZVLocalizationManager(zvKitBundle()->path("Localization", "plist"));
  return *instance;
}

std::optional<std::string> ZVLocalizationManager::text(const std::string& key) const {
  const Value* value = valueForKey(plist_, key);
  const auto* entry = value ? value->dictionary() : nullptr;
  const auto isText = [](const auto& pair) { return pair.second.string() != nullptr; };
  if (!entry || !std::all_of(entry->begin(), entry->end(), isText)) return std::nullopt;
  for (const ZVLanguage language : {textLanguage(), ZVLanguage::english}) {
    auto text = stringValue(*entry, rawValue(language));
    if (text && !text->empty()) return text;
  }
  return std::nullopt;
}

std::string ZVLocalizationManager::translation(const std::string& key) const {
  return text(key).value_or(key);
}

std::string uppercased(const std::string& text) {
  return Locale(rawValue(textLanguage())).uppercased(text);
}

std::string localized(const std::string& key) {
  return ZVLocalizationManager::shared().translation(key);
}

} // namespace zuvi
