#include "kit/Helper/LiveChat/BuildUrl.h"

#include "platform/Foundation/PercentEncoding.h"

#include <string_view>

namespace zuvi {

namespace {

std::string replacingAll(std::string text, std::string_view placeholder, const std::string& value) {
  for (auto at = text.find(placeholder); at != std::string::npos;
       at = text.find(placeholder, at + value.size()))
    text.replace(at, placeholder.size(), value);
  return text;
}

/// Escaped twice: first each key and value, then all pairs together, so that the page gets one
/// parameter that contains a query.
std::optional<std::string> escaped(const std::optional<CustomVariables>& customVariables) {
  if (!customVariables) return std::nullopt;
  constexpr std::string_view special = "=\"#%/<>?@\\^`{|} &\n\u3000";
  std::string pairs;
  for (const auto& [key, value] : *customVariables) {
    const auto escapedKey = addingPercentEncodingOf(key, special);
    const auto escapedValue = addingPercentEncodingOf(value, special);
    if (!escapedKey || !escapedValue) continue;
    if (!pairs.empty()) pairs += '&';
    pairs += *escapedKey + '=' + *escapedValue;
  }
  return addingPercentEncodingOf(pairs, special);
}

void appendPair(std::string& address, const char* name, const std::string& value) {
  if (value.empty()) return;
  if (const auto encoded = addingPercentEncoding(value, CharacterSet::urlHostAllowed()))
    address += name + *encoded;
}

} // namespace

std::optional<URL> buildUrl(const std::string& templateURL,
                            const LiveChatConfiguration& configuration,
                            const std::optional<CustomVariables>& customVariables, int) {
  std::string address = replacingAll(templateURL, "{%license%}", configuration.licenseId);
  address = replacingAll(std::move(address), "{%group%}", configuration.groupId);
  address = "https://" + address + "&native_platform=ios";
  appendPair(address, "&name=", configuration.name);
  appendPair(address, "&email=", configuration.email);
  if (const auto params = escaped(customVariables)) address += "&params=" + *params;
  return URL::fromString(address);
}

} // namespace zuvi
