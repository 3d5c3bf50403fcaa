#include "sandbox/core/text/Base64.h"

#include <cstdint>

namespace zuvi::sandbox {
namespace {

int digit(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  if (c == '+') return 62;
  if (c == '/') return 63;
  return -1;
}

} // namespace

std::optional<std::string> decodeBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  std::size_t padding = 0;
  while (padding < 2 && !text.empty() && text.back() == '=') {
    text.remove_suffix(1);
    ++padding;
  }
  std::string bytes;
  bytes.reserve(text.size() * 3 / 4);
  std::uint32_t bits = 0;
  int held = 0;
  for (const char c : text) {
    const int value = digit(c);
    if (value < 0) return std::nullopt;
    bits = (bits << 6 | static_cast<std::uint32_t>(value)) & 0xffffff;
    held += 6;
    if (held >= 8) {
      held -= 8;
      bytes.push_back(static_cast<char>(bits >> held & 0xff));
    }
  }
  return bytes;
}

} // namespace zuvi::sandbox
