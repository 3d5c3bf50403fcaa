#pragma once

#include <optional>
#include <string>

namespace zuvi {

/// A language and region, such as the user's as the environment gives them.
class Locale {
public:
  explicit Locale(std::string identifier) : identifier_(std::move(identifier)) {}
  /// Read anew at every call.
  static Locale current();

  const std::string& identifier() const { return identifier_; }
  /// Such as "DE"; absent when the locale names no region.
  std::optional<std::string> regionCode() const;
  /// The name of a region in this locale's language; absent for an empty code. A code that nobody
  /// knows is its own name.
  std::optional<std::string> localizedStringForRegionCode(const std::string& code) const;
  /// A text in upper case by the rules of the language; UTF-8.
  std::string uppercased(const std::string& text) const;

private:
  std::string identifier_;
};

} // namespace zuvi
