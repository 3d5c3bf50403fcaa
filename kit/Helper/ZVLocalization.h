#pragma once

#include <ZuviSDK/Foundation/Value.h>
#include "kit/Main/Private/ZVLanguage.h"

#include <functional>
#include <optional>
#include <string>

namespace zuvi {

/// A change of the kit's language. The kit itself does not post it.
inline constexpr const char* languageChangedNotification = "languageChanged";

/// Says in which language the kit's texts are; `language` is called for each text. Before that they
/// are in English.
void setTextLanguage(std::function<ZVLanguage()> language);

/// The kit's texts in the merchant's language.
class ZVLocalizationManager {
public:
  static ZVLocalizationManager& shared();
  /// From a property list; a file that is missing or has another form gives no texts.
  explicit ZVLocalizationManager(const std::optional<std::string>& path);

  bool isEmpty() const { return plist_.empty(); }
  /// The text of `key` in the merchant's language, else in English; absent when neither has one.
  std::optional<std::string> text(const std::string& key) const;
  /// The same, else the key itself.
  std::string translation(const std::string& key) const;

private:
  Value::Dictionary plist_;
};

/// A text in upper case, by the rules of the merchant's language.
std::string uppercased(const std::string& text);

/// `ZVLocalizationManager::shared().translation(key)`.
std::string localized(const std::string& key);

} // namespace zuvi
