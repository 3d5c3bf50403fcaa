#pragma once

#include <bitset>
#include <optional>
#include <string>
#include <string_view>

namespace zuvi {

/// A set of ASCII characters that may stand unescaped in a part of an address.
class CharacterSet {
public:
  CharacterSet() = default;
  explicit CharacterSet(std::string_view characters);

  /// Letters, digits and !$&'()*+,-./:;=?@_~
  static const CharacterSet& urlQueryAllowed();
  /// Letters, digits and !$&'()*+,-.:;=[]_~
  static const CharacterSet& urlHostAllowed();

  bool contains(char c) const;
  void insert(std::string_view characters);
  void remove(std::string_view characters);

private:
  std::bitset<128> members_;
};

/// Escapes every byte outside `allowed` as %XX, upper case. Absent when `text` is not UTF-8.
std::optional<std::string> addingPercentEncoding(std::string_view text,
                                                 const CharacterSet& allowed);
/// Escapes just the characters that `escaped` holds, which may lie outside of ASCII; all others
/// stay. Absent when `text` is not UTF-8.
std::optional<std::string> addingPercentEncodingOf(std::string_view text, std::string_view escaped);

} // namespace zuvi
