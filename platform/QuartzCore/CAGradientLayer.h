#pragma once

#include <ZuviSDK/QuartzCore/CALayer.h>

namespace zuvi {

/// A layer filled with colours that run from its top edge to its bottom edge.
class CAGradientLayer : public CALayer {
public:
  const std::vector<CGColor>& colors() const { return colors_; }
  void setColors(std::vector<CGColor> colors);
  void draw(DrawingContext& context) override;

private:
  std::vector<CGColor> colors_;
};

} // namespace zuvi
