#pragma once

#include "platform/Foundation/CurlAddress.h"
#include "platform/Foundation/URLSession.h"

#include <optional>
#include <string>

namespace zuvi {

/// Where an answer of that status and `Location` sends a request; absent when nowhere. The request
/// becomes what is to be sent there: an upload becomes a question for what stands there, unless the
/// answer wants it kept. What is meant for `from` alone goes to nobody else; a body that would have
/// to is not sent at all, and the answer stands.
std::optional<CurlAddress> followRedirect(const CurlAddress& from, int status,
                                          const std::string& location, URLRequest& request);

} // namespace zuvi
