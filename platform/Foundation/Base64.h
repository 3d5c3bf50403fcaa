#pragma once

#include <string>
#include <string_view>

namespace zuvi {

enum class Base64Lines { None, Length64 };

/// Base64 with padding; `Length64` puts CR LF after every 64 characters, none at the end.
std::string base64Encoded(std::string_view bytes, Base64Lines lines = Base64Lines::None);

} // namespace zuvi
