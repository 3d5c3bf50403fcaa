#pragma once

#include <string_view>

namespace zuvi {

bool isValidUtf8(std::string_view text);

} // namespace zuvi
