#pragma once

#include <ZuviSDK/CoreGraphics/CGColor.h>
#include <ZuviSDK/Export.h>

#include <optional>
#include <string>

namespace zuvi {

/// A colour as views take it.
using UIColor = CGColor;

/// The colour of texts to which nobody gives one.
inline constexpr UIColor defaultTextColor = UIColor::bytes(31, 38, 53);

/// "#RRGGBB" or "#RRGGBBAA" as nibs write it; absent for anything else.
ZUVI_API std::optional<UIColor> colorFromText(const std::string& text);
/// The text that `colorFromText` reads; without alpha when opaque.
std::string textFromColor(const UIColor& color);

} // namespace zuvi
