#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zuvi {

/// A case of an enumeration, and its text in the back end's JSON.
template <class Enumeration> struct RawValue {
  Enumeration value;
  std::string_view text;
};

/// Specialised next to each such enumeration; `all` lists its cases.
template <class Enumeration> struct RawValues;

template <class Enumeration> std::string rawValue(Enumeration value) {
  for (const auto& known : RawValues<Enumeration>::all)
    if (known.value == value) return std::string(known.text);
  return {};
}

/// Absent unless `text` is exactly one of the raw values.
template <class Enumeration> std::optional<Enumeration> fromRawValue(std::string_view text) {
  for (const auto& known : RawValues<Enumeration>::all)
    if (known.text == text) return known.value;
  return std::nullopt;
}

} // namespace zuvi
