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

} // namespace zuvi
