#pragma once

#include <ZuviSDK/UIKit/UIImage.h>

#include <memory>

namespace zuvi {

/// The top left corner of a picture, in the size of `rect` (points) and at the screen's scale;
/// transparent beyond the picture's edge. The origin of `rect` is ignored. Null when `rect` is
/// empty. Main queue.
std::shared_ptr<const UIImage> crop(const UIImage& image, const CGRect& rect);

} // namespace zuvi
