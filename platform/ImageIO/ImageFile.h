#pragma once

#include <ZuviSDK/CoreGraphics/CGImage.h>

#include <memory>

namespace zuvi {

/// A picture from the bytes of a PNG or JPEG file; null when they are none, or one far larger than
/// a camera's. Any thread.
std::shared_ptr<const CGImage> decodeImage(const Data& bytes);

/// The picture as a PNG file.
Data encodePNG(const CGImage& image);

} // namespace zuvi
