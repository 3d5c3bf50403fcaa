#pragma once

#include <string>

namespace zuvi {

/// What a person sees in front, the sheet on top, as text: one view a line, indented below the one
/// that it stands in; its class and outlet, its frame on the screen in points, and what its class
/// tells that is not as usual. What a screen reader says stands behind `says`. Views below a hidden
/// one, and those without a size, are left out.
///
/// What a person could not read or touch is marked with `FAULT` on its line: text that is clipped,
/// what lies off the screen or is cut off, and what lies over something else to read or touch.
std::string screenText();

} // namespace zuvi
