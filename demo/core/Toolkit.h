#pragma once

#include <optional>
#include <string>

namespace zuvi::demo {

/// Connects to the display. Screen readers call the program `name`; `textScale` replaces the
/// desktop's. False: there is no display.
bool startToolkit(const std::string& name, std::optional<double> textScale);

} // namespace zuvi::demo
