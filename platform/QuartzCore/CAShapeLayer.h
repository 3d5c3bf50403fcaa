#pragma once

#include "platform/QuartzCore/CALayer.h"

namespace zuvi {

/// A layer that shows an outline, filled and stroked.
class CAShapeLayer : public CALayer {
public:
  const CGPath& path() const { return path_; }
  void setPath(CGPath path);
  void setFillColor(const CGColor& color);
  void setStrokeColor(const CGColor& color);
  void setLineWidth(double width);
  void draw(DrawingContext& context) override;

private:
  CGPath path_;
  CGColor fillColor_ = CGColor::black();
  CGColor strokeColor_ = CGColor::clear();
  double lineWidth_ = 1;
};

} // namespace zuvi
