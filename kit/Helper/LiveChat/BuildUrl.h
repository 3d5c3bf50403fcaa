#pragma once

#include "kit/Helper/LiveChat/LiveChatConfiguration.h"
#include "platform/Foundation/URL.h"

#include <map>
#include <optional>
#include <string>

namespace zuvi {

using CustomVariables = std::map<std::string, std::string>;

/// The address of the chat page. `templateURL` comes without scheme and has a query already; absent
/// when the result is no address. An address longer than `maxLength` is passed on unchanged.
std::optional<URL> buildUrl(const std::string& templateURL,
                            const LiveChatConfiguration& configuration,
                            const std::optional<CustomVariables>& customVariables, int maxLength);

} // namespace zuvi
