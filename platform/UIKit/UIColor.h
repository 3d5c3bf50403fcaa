#pragma once

#include "platform/CoreGraphics/CGColor.h"

#include <optional>
#include <string>

namespace zuvi {

using UIColor = CGColor;

/// "#RRGGBB" or "#RRGGBBAA" as nibs write it; absent for anything else.
std::optional<UIColor> colorFromText(const std::string& text);
/// The text that `colorFromText` reads; without alpha when opaque.
std::string textFromColor(const UIColor& color);

} // namespace zuvi
