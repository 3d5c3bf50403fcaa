#pragma once

#include <optional>
#include <string>

namespace zuvi {

/// The user's language and region, as the environment gives them.
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

private:
  std::string identifier_;
};

} // namespace zuvi
