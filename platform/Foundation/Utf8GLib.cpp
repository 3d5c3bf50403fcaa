#include "platform/Foundation/Utf8.h"

#include <glib.h>

namespace zuvi {

bool isValidUtf8(std::string_view text) {
  // The library stops at a zero byte, which is a valid character.
  for (;;) {
    const auto zero = text.find('\0');
    const auto part = text.substr(0, zero);
    if (!g_utf8_validate_len(part.data(), part.size(), nullptr)) return false;
    if (zero == std::string_view::npos) return true;
    text.remove_prefix(zero + 1);
  }
}

std::string lowercased(std::string_view text) {
  char* valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
  std::string result;
  for (const char* at = valid; *at; at = g_utf8_next_char(at)) {
    char bytes[6];
    const int size = g_unichar_to_utf8(g_unichar_tolower(g_utf8_get_char(at)), bytes);
    result.append(bytes, static_cast<std::size_t>(size));
  }
  g_free(valid);
  return result;
}

} // namespace zuvi
