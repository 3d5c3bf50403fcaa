#pragma once

#include <ZuviSDK/Foundation/Value.h>

#include <string>

namespace zuvi {

/// For whoever wants to tell that the kit's language has changed.
inline constexpr const char* languageChangedNotification = "languageChanged";

/// The kit's texts in the merchant's language.
class ZVLocalizationManager {
public:
  static ZVLocalizationManager& shared();
  /// From a property list; a file that is missing or of another shape holds no texts.
  explicit ZVLocalizationManager(const std::optional<std::string>& path);

  /// The text of `key` in the merchant's language, else in English, else the key itself.
  std::string translation(const std::string& key) const;

private:
  Value::Dictionary plist_;
};

/// A text that is only spoken, in the merchant's language, from a table of their own.
std::string spoken(const std::string& key);

/// A text in upper case, by the rules of the merchant's language.
std::string uppercased(const std::string& text);

/// `ZVLocalizationManager::shared().translation(key)`.
std::string localized(const std::string& key);

} // namespace zuvi
