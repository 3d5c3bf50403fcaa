#pragma once

#include <ZuviSDK/CoreGraphics/CGImage.h>

#include <memory>

namespace zuvi {

/// The screen as it is now, at its own scale, whatever shows it.
std::shared_ptr<const CGImage> pictureOfScreen();

} // namespace zuvi
