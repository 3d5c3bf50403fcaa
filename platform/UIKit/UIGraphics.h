#pragma once

#include <ZuviSDK/QuartzCore/DrawingContext.h>
#include <ZuviSDK/UIKit/UIImage.h>

#include <functional>
#include <memory>

namespace zuvi {

/// A picture of that size in points at the screen's scale, clear where `draw` draws nothing. Null
/// when the size is empty or beyond what fits into memory. Main queue.
std::shared_ptr<const UIImage> renderImage(CGSize size,
                                           const std::function<void(DrawingContext&)>& draw);

} // namespace zuvi
