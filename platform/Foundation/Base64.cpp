#include "platform/Foundation/Base64.h"

#include <cstdint>

namespace zuvi {

std::string base64Encoded(std::string_view bytes, Base64Lines lines) {
  constexpr const char* alphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  constexpr std::size_t bytesInLine = 48; // 64 characters
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4 + bytes.size() / bytesInLine * 2);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    if (lines == Base64Lines::Length64 && i > 0 && i % bytesInLine == 0) text += "\r\n";
    const auto rest = bytes.substr(i, 3);
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k)
      group = group << 8 | (k < rest.size() ? static_cast<std::uint8_t>(rest[k]) : 0U);
    for (std::size_t k = 0; k < 4; ++k)
      text += k <= rest.size() ? alphabet[group >> (18 - 6 * k) & 63] : '=';
  }
  return text;
}

} // namespace zuvi
