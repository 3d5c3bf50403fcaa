#pragma once

#include <string_view>

namespace zuvi::sandbox {

/// Whether the bytes are UTF-8: no overlong form, no surrogate, nothing past U+10FFFF.
bool isUtf8(std::string_view text);

} // namespace zuvi::sandbox
