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

} // namespace

ZVLanguage textLanguage() {
  return languageSource() ? languageSource()() : ZVLanguage::english;
}

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

std::string ZVLocalizationManager::translation(const std::string& key) const {
  const Value* value = valueForKey(plist_, key);
  const auto* entry = value ? value->dictionary() : nullptr;
  const auto isText = [](const auto& pair) { return pair.second.string() != nullptr; };
  if (!entry || !std::all_of(entry->begin(), entry->end(), isText)) return key;
  for (const ZVLanguage language : {textLanguage(), ZVLanguage::english}) {
    const auto text = stringValue(*entry, rawValue(language));
    if (text && !text->empty()) return *text;
  }
  return key;
}

std::string spoken(const std::string& key) {
  static const auto* texts =
      new ZVLocalizationManager(zvKitBundle()->path("Accessibility", "plist"));
  return texts->translation(key);
}

std::string uppercased(const std::string& text) {
  return Locale(rawValue(textLanguage())).uppercased(text);
}

std::string localized(const std::string& key) {
  return ZVLocalizationManager::shared().translation(key);
}

} // namespace zuvi
