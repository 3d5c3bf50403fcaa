#include "platform/Foundation/Base64.h"

#include <memory>

#include <glib.h>

namespace zuvi {

std::string base64Encoded(std::string_view bytes, Base64Lines lines) {
  const std::unique_ptr<char, void (*)(void*)> encoded(
      g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size()), g_free);
  const std::string_view whole = encoded.get();
  if (lines != Base64Lines::Length64) return std::string(whole);
  constexpr std::size_t length = 64;
  std::string text;
  for (std::size_t i = 0; i < whole.size(); i += length) {
    if (i > 0) text += "\r\n";
    text += whole.substr(i, length);
  }
  return text;
}

} // namespace zuvi
