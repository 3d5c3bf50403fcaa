#pragma once

#include <string>

namespace zuvi {

/// The text in ASCII: what that lacks becomes what is nearest to it, such as e for é, and where
/// nothing is near, a question mark.
std::string asciiLossy(const std::string& text);

} // namespace zuvi
