#pragma once

#include <string_view>

namespace zuvi::sandbox {

/// A file that was built into the program; empty when there is none of that name.
std::string_view embeddedFile(std::string_view name);

} // namespace zuvi::sandbox
