#pragma once

#include <ZuviSDK/Foundation/URL.h>
#include "kit/Helper/LiveChat/LiveChatConfiguration.h"

#include <optional>
#include <string>

namespace zuvi {

/// The address of the chat page. `templateURL` has no scheme, but already a query. Absent when the
/// result is not an address. An address longer than `maxLength` is returned unchanged.
std::optional<URL> buildUrl(const std::string& templateURL,
                            const LiveChatConfiguration& configuration,
                            const std::optional<CustomVariables>& customVariables, int maxLength);

} // namespace zuvi
