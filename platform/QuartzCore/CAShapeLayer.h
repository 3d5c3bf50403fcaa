#pragma once

#include "platform/Export.h"
#include "platform/QuartzCore/CALayer.h"
#include "platform/QuartzCore/DrawingContext.h"

namespace zuvi {

/// A layer that shows an outline, filled and stroked.
class ZUVI_API CAShapeLayer : public CALayer {
public:
  const CGPath& path() const { return path_; }
  void setPath(CGPath path);
  void setFillRule(DrawingContext::FillRule rule);
  CGColor fillColor() const { return fillColor_; }
  void setFillColor(const CGColor& color);
  void setStrokeColor(const CGColor& color);
  void setLineWidth(double width);
  void draw(DrawingContext& context) override;

private:
  CGPath path_;
  DrawingContext::FillRule fillRule_ = DrawingContext::FillRule::NonZero;
  CGColor fillColor_ = CGColor::black();
  CGColor strokeColor_ = CGColor::clear();
  double lineWidth_ = 1;
};

} // namespace zuvi
