#pragma once

#include <ZuviSDK/Foundation/URL.h>
#include "kit/Helper/LiveChat/LiveChatConfiguration.h"

#include <optional>
#include <string>

namespace zuvi {

/// The address of the chat page. `templateURL` comes without scheme and has a query already; absent
/// when the result is no address. An address longer than `maxLength` is passed on unchanged.
std::optional<URL> buildUrl(const std::string& templateURL,
                            const LiveChatConfiguration& configuration,
                            const std::optional<CustomVariables>& customVariables, int maxLength);

} // namespace zuvi
