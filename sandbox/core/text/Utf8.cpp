#include "sandbox/core/text/Utf8.h"

#include <cstdint>

namespace zuvi::sandbox {

bool isUtf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i++]);
    if (lead < 0x80) continue;
    const int following = lead >= 0xf0 ? 3 : lead >= 0xe0 ? 2 : 1;
    if (lead < 0xc2 || lead > 0xf4) return false;
    std::uint32_t code = lead & (0x3f >> following);
    for (int k = 0; k < following; ++k, ++i) {
      if (i == text.size()) return false;
      const auto next = static_cast<unsigned char>(text[i]);
      if ((next & 0xc0) != 0x80) return false;
      code = code << 6 | (next & 0x3f);
    }
    const std::uint32_t least = following == 3 ? 0x10000 : following == 2 ? 0x800 : 0x80;
    if (code < least || code > 0x10ffff || (code >= 0xd800 && code < 0xe000)) return false;
  }
  return true;
}

} // namespace zuvi::sandbox
