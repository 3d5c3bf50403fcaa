#pragma once

#include <string>

namespace zuvi::sandbox {

/// This moment in UTC with milliseconds, such as 2024-01-31T12:00:00.000Z.
std::string timestampNow();

} // namespace zuvi::sandbox
