#pragma once

#include "platform/CoreGraphics/CGGeometry.h"

namespace zuvi::demo {

/// Opens the program's window with the screen in it; closing it ends the main loop. False when
/// there is no display.
bool openWindow(CGSize size);

} // namespace zuvi::demo
