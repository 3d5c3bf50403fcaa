#pragma once

#include <ZuviSDK/UIKit/UIImage.h>

#include <memory>

namespace zuvi {

/// The top left corner of a picture: as large as `rect` (points), at the screen's scale, clear
/// where the picture ends. The origin of `rect` does not count. Null when `rect` is empty. Main
/// queue.
std::shared_ptr<const UIImage> crop(const UIImage& image, const CGRect& rect);

} // namespace zuvi
