#include <ZuviSDK/UIKit/UIColor.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace zuvi {

std::optional<UIColor> colorFromText(const std::string& text) {
  if ((text.size() != 7 && text.size() != 9) || text[0] != '#') return std::nullopt;
  std::uint32_t bits = 0;
  const char* end = text.data() + text.size();
  const auto [stop, failed] = std::from_chars(text.data() + 1, end, bits, 16);
  if (failed != std::errc() || stop != end) return std::nullopt;
  if (text.size() == 7) bits = bits << 8 | 0xff;
  return UIColor::bytes(bits >> 24, bits >> 16 & 0xff, bits >> 8 & 0xff, (bits & 0xff) / 255.0);
}

std::string textFromColor(const UIColor& color) {
  const auto byte = [](double v) { return static_cast<unsigned>(std::lround(v * 255)) & 0xff; };
  char text[16];
  std::snprintf(text, sizeof text, "#%02X%02X%02X", byte(color.red), byte(color.green),
                byte(color.blue));
  std::string result = text;
  if (color.alpha < 1) {
    std::snprintf(text, sizeof text, "%02X", byte(color.alpha));
    result += text;
  }
  return result;
}

} // namespace zuvi
