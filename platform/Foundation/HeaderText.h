#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace zuvi {

// What headers are made of; none of it depends on the process's locale.

inline char lowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline std::string lowerCase(std::string_view text) {
  std::string result(text);
  for (char& c : result)
    c = lowerCase(c);
  return result;
}

inline bool isTokenCharacter(char c) {
  const char lower = lowerCase(c);
  return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') ||
         (c && std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos);
}

/// What a method and the name of a header are.
inline bool isToken(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isTokenCharacter);
}

inline bool isHeaderValue(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

inline std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

} // namespace zuvi
