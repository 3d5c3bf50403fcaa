#pragma once

#include <string>

namespace zuvi {

/// A new random identifier in its canonical form: 36 characters, upper case.
std::string uuidString();

} // namespace zuvi
