#pragma once

#include <string>

namespace zuvi::sandbox {

/// A new random identifier in its usual text form, lower case.
std::string newUuid();

} // namespace zuvi::sandbox
