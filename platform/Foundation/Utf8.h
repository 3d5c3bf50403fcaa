#pragma once

#include <string>
#include <string_view>

namespace zuvi {

bool isValidUtf8(std::string_view text);

/// In lower case, alike whatever the device's language; bytes that are no UTF-8 are replaced.
std::string lowercased(std::string_view text);

} // namespace zuvi
