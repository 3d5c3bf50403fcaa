#include "platform/Foundation/PercentEncoding.h"

#include "platform/Foundation/Utf8.h"

namespace zuvi {

namespace {

constexpr std::string_view alphanumerics =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";

void appendEscaped(std::string& result, char c) {
  constexpr const char* digits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  result += '%';
  result += digits[byte >> 4];
  result += digits[byte & 15];
}

CharacterSet alphanumericsAnd(std::string_view others) {
  CharacterSet set(alphanumerics);
  set.insert(others);
  return set;
}

} // namespace

CharacterSet::CharacterSet(std::string_view characters) {
  insert(characters);
}

const CharacterSet& CharacterSet::urlQueryAllowed() {
  static const CharacterSet set = alphanumericsAnd("!$&'()*+,-./:;=?@_~");
  return set;
}

const CharacterSet& CharacterSet::urlHostAllowed() {
  static const CharacterSet set = alphanumericsAnd("!$&'()*+,-.:;=[]_~");
  return set;
}

bool CharacterSet::contains(char c) const {
  const auto code = static_cast<unsigned char>(c);
  return code < members_.size() && members_[code];
}

void CharacterSet::insert(std::string_view characters) {
  for (const char c : characters)
    if (static_cast<unsigned char>(c) < members_.size())
      members_.set(static_cast<unsigned char>(c));
}

void CharacterSet::remove(std::string_view characters) {
  for (const char c : characters)
    if (static_cast<unsigned char>(c) < members_.size())
      members_.reset(static_cast<unsigned char>(c));
}

std::optional<std::string> addingPercentEncoding(std::string_view text,
                                                 const CharacterSet& allowed) {
  if (!isValidUtf8(text)) return std::nullopt;
  std::string result;
  result.reserve(text.size());
  for (const char c : text)
    if (allowed.contains(c))
      result += c;
    else
      appendEscaped(result, c);
  return result;
}

std::optional<std::string> addingPercentEncodingOf(std::string_view text,
                                                   std::string_view escaped) {
  if (!isValidUtf8(text)) return std::nullopt;
  const auto continues = [&](std::size_t i) {
    return i < text.size() && (static_cast<unsigned char>(text[i]) & 0xc0) == 0x80;
  };
  std::string result;
  result.reserve(text.size());
  for (std::size_t start = 0, end = 0; start < text.size(); start = end) {
    end = start + 1;
    while (continues(end))
      end++;
    const auto character = text.substr(start, end - start);
    if (escaped.find(character) == std::string_view::npos)
      result += character;
    else
      for (const char c : character)
        appendEscaped(result, c);
  }
  return result;
}

} // namespace zuvi
