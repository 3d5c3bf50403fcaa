#include "platform/QuartzCore/CAGradientLayer.h"

#include <ZuviSDK/QuartzCore/DrawingContext.h>

namespace zuvi {

void CAGradientLayer::setColors(std::vector<CGColor> colors) {
  colors_ = std::move(colors);
  setNeedsDisplay();
}

void CAGradientLayer::draw(DrawingContext& context) {
  context.fillGradient(bounds(), colors_);
}

} // namespace zuvi
