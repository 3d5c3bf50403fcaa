#include "platform/Foundation/CurlHead.h"

#include "platform/Foundation/HeaderText.h"

namespace zuvi {

namespace {
constexpr std::size_t longestHead = std::size_t{256} << 10;
}

bool CurlHead::add(std::string_view line) {
  received_ += line.size();
  if (received_ > longestHead) return false;
  if (line.starts_with("HTTP/")) { // an interim answer may have come before
    response.headers.clear();
    return true;
  }
  const auto colon = line.find(':');
  if (colon == std::string_view::npos) return true;
  std::string& value = response.headers[lowerCase(trimmed(line.substr(0, colon)))];
  if (!value.empty()) value += ", ";
  value += trimmed(line.substr(colon + 1));
  return true;
}

} // namespace zuvi
