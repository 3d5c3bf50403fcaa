#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>

#include <optional>

namespace zuvi::demo {

/// Opens the program's window with the screen in it; closing it ends the main loop. False when
/// there is no display.
/// `textScale` takes the place of the desktop's.
bool openWindow(CGSize size, bool fullScreen, std::optional<double> textScale);

} // namespace zuvi::demo
