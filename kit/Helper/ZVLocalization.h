#pragma once

#include <ZuviSDK/Foundation/Value.h>

#include <functional>
#include <optional>
#include <string>

namespace zuvi {

/// A change of the kit's language. The kit itself does not post it.
inline constexpr const char* languageChangedNotification = "languageChanged";

/// Says in which language texts are, by its code; `language` is called for each text. Before that
/// they are in English.
void setTextLanguage(std::function<std::string()> language);
/// Names the file with the host's texts; empty: there is none. `file` is called for each text.
void setHostTexts(std::function<std::string()> file);

/// Texts by key and language.
class ZVLocalizationManager {
public:
  /// The host's texts, and the kit's where the host has none in that language.
  static ZVLocalizationManager& shared();
  /// From a property list; a file that is missing or has another form gives no texts.
  explicit ZVLocalizationManager(const std::optional<std::string>& path);

  bool isEmpty() const { return plist_.empty(); }
  /// The text of `key` in the current language, else in English; absent when neither has one.
  std::optional<std::string> text(const std::string& key) const;
  /// The same, else the key itself.
  std::string translation(const std::string& key) const;

private:
  std::optional<std::string> textIn(const std::string& language, const std::string& key) const;
  /// Reads the host's file when it is named, and says what is wrong with it.
  const ZVLocalizationManager* hostTexts() const;

  Value::Dictionary plist_;
  bool asksHost_ = false;
};

/// A text in upper case, by the rules of the current language.
std::string uppercased(const std::string& text);

/// `ZVLocalizationManager::shared().translation(key)`.
std::string localized(const std::string& key);

} // namespace zuvi
