#include "sandbox/core/text/PercentCoding.h"

namespace zuvi::sandbox {
namespace {

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool isPlain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::string_view("-._~/").find(c) != std::string_view::npos;
}

} // namespace

std::optional<std::string> decodePercent(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      plain.push_back(text[i]);
      continue;
    }
    if (text.size() - i < 3) return std::nullopt;
    const int high = hexDigit(text[i + 1]);
    const int low = hexDigit(text[i + 2]);
    if (high < 0 || low < 0) return std::nullopt;
    plain.push_back(static_cast<char>(high << 4 | low));
    i += 2;
  }
  return plain;
}

std::optional<std::string_view> queryValue(std::string_view query, std::string_view key) {
  while (!query.empty()) {
    const auto pair = query.substr(0, query.find('&'));
    query.remove_prefix(std::min(pair.size() + 1, query.size()));
    if (pair.size() > key.size() && pair.starts_with(key) && pair[key.size()] == '=')
      return pair.substr(key.size() + 1);
  }
  return std::nullopt;
}

std::string encodePath(std::string_view path) {
  static constexpr std::string_view digits = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : path) {
    if (isPlain(c)) {
      encoded.push_back(c);
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    encoded += {'%', digits[byte >> 4], digits[byte & 15]};
  }
  return encoded;
}

} // namespace zuvi::sandbox
