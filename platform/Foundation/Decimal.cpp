#include "platform/Foundation/Decimal.h"

#include <charconv>
#include <cmath>

namespace zuvi {

std::optional<double> decimalNumber(std::string_view text) {
  double value = 0;
  const auto [stop, failed] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (failed != std::errc() || stop != text.data() + text.size()) return std::nullopt;
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::string decimalText(double number, int digits) {
  char buffer[64];
  const auto end =
      std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::general, digits);
  return {buffer, end.ptr};
}

} // namespace zuvi
