#include "kit/Helper/UIImage+Crop.h"

#include "platform/UIKit/UIGraphics.h"

namespace zuvi {

std::shared_ptr<const UIImage> crop(const UIImage& image, const CGRect& rect) {
  return renderImage(rect.size(), [&image](DrawingContext& context) {
    const CGSize size = image.size();
    if (const auto pixels = image.pixels(size, context.scale()))
      context.drawImage(*pixels, {0, 0, size.width, size.height});
  });
}

} // namespace zuvi
