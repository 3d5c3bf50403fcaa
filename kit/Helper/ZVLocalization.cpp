#include "kit/Helper/ZVLocalization.h"

#include "kit/Helper/ZVBundle.h"
#include "platform/Foundation/Locale.h"
#include "platform/Foundation/PropertyList.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

namespace zuvi {

namespace {

constexpr const char* english = "en";

std::function<std::string()>& languageSource() {
  static std::function<std::string()> source;
  return source;
}

std::function<std::string()>& hostFileSource() {
  static std::function<std::string()> source;
  return source;
}

std::string textLanguage() {
  return languageSource() ? languageSource()() : english;
}

} // namespace

void setTextLanguage(std::function<std::string()> language) {
  languageSource() = std::move(language);
}

void setHostTexts(std::function<std::string()> file) {
  hostFileSource() = std::move(file);
}

ZVLocalizationManager::ZVLocalizationManager(const std::optional<std::string>& path) {
  const auto list = path ? propertyListFromFile(*path) : std::nullopt;
  if (list && list->dictionary()) plist_ = *list->dictionary();
}

ZVLocalizationManager& ZVLocalizationManager::shared() {
  static auto* instance = [] {
    auto* made = new ZVLocalizationManager(zvKitBundle()->path("Localization", "plist"));
    made->asksHost_ = true;
    return made;
  }();
  return *instance;
}

const ZVLocalizationManager* ZVLocalizationManager::hostTexts() const {
  static std::string file;
  static std::unique_ptr<const ZVLocalizationManager> read;
  if (!asksHost_ || !hostFileSource()) return nullptr;
  const std::string named = hostFileSource()();
  if (std::exchange(file, named) == named) return read.get();
  read = named.empty() ? nullptr : std::make_unique<const ZVLocalizationManager>(named);
  if (!read) return nullptr;
  if (read->isEmpty())
    std::fprintf(stderr, "ZuviSDK: %s has no texts, or can't be read.\n", named.c_str());
  for (const auto& [key, texts] : read->plist_)
    if (!isEmpty() && !plist_.contains(key))
      std::fprintf(stderr, "ZuviSDK: %s: the kit has no text %s.\n", named.c_str(), key.c_str());
  return read.get();
}

std::optional<std::string> ZVLocalizationManager::textIn(const std::string& language,
                                                         const std::string& key) const {
  const Value* value = valueForKey(plist_, key);
  const auto* entry = value ? value->dictionary() : nullptr;
  const auto isText = [](const auto& pair) { return pair.second.string() != nullptr; };
  if (!entry || !std::all_of(entry->begin(), entry->end(), isText)) return std::nullopt;
  auto text = stringValue(*entry, language);
  return text && !text->empty() ? text : std::nullopt;
}

std::optional<std::string> ZVLocalizationManager::text(const std::string& key) const {
  const ZVLocalizationManager* host = hostTexts();
  for (const std::string& language : {textLanguage(), std::string(english)})
    for (const ZVLocalizationManager* texts : {host, this})
      if (auto text = texts ? texts->textIn(language, key) : std::nullopt) return text;
  return std::nullopt;
}

std::string ZVLocalizationManager::translation(const std::string& key) const {
  return text(key).value_or(key);
}

std::string uppercased(const std::string& text) {
  return Locale(textLanguage()).uppercased(text);
}

std::string localized(const std::string& key) {
  return ZVLocalizationManager::shared().translation(key);
}

} // namespace zuvi
