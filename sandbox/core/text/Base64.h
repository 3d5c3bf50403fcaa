#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zuvi::sandbox {

/// Decodes Base64 with its padding; absent when a character or the length is wrong.
std::optional<std::string> decodeBase64(std::string_view text);

} // namespace zuvi::sandbox
