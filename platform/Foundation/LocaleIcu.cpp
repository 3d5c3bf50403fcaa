#include "platform/Foundation/Locale.h"

#include <cstdlib>

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace zuvi {

namespace {

// The order in which the C library looks for the language of messages.
std::string environmentLocale() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
    if (const char* value = std::getenv(name); value && *value) return value;
  return {};
}

} // namespace

Locale Locale::current() {
  std::string name = environmentLocale();
  name = name.substr(0, name.find_first_of(".@"));
  // The neutral locale speaks English and stands nowhere.
  if (name.empty() || name == "C" || name == "POSIX") return Locale("en");
  const auto locale = icu::Locale::createCanonical(name.c_str());
  return Locale(locale.isBogus() || !*locale.getLanguage() ? "en" : locale.getName());
}

std::optional<std::string> Locale::regionCode() const {
  const std::string code = icu::Locale(identifier_.c_str()).getCountry();
  return code.empty() ? std::nullopt : std::optional(code);
}

std::optional<std::string> Locale::localizedStringForRegionCode(const std::string& code) const {
  if (code.empty()) return std::nullopt;
  icu::UnicodeString name;
  icu::Locale("", code.c_str()).getDisplayCountry(icu::Locale(identifier_.c_str()), name);
  std::string text;
  name.toUTF8String(text);
  return text.empty() ? code : text;
}

std::string Locale::uppercased(const std::string& text) const {
  std::string upper;
  icu::UnicodeString::fromUTF8(text).toUpper(icu::Locale(identifier_.c_str())).toUTF8String(upper);
  return upper;
}

} // namespace zuvi
