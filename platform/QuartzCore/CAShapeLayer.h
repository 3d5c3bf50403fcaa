#pragma once

#include <ZuviSDK/QuartzCore/CALayer.h>
#include <ZuviSDK/QuartzCore/DrawingContext.h>

namespace zuvi {

/// A layer that shows an outline, filled and stroked.
class CAShapeLayer : public CALayer {
public:
  /// In the layer's coordinates; empty at start.
  /// @{
  const CGPath& path() const { return path_; }
  void setPath(CGPath path);
  /// @}
  /// What counts as inside; non-zero at start.
  void setFillRule(DrawingContext::FillRule rule);
  /// Black at start; clear: not filled.
  /// @{
  CGColor fillColor() const { return fillColor_; }
  void setFillColor(const CGColor& color);
  /// @}
  /// Clear at start: not stroked.
  void setStrokeColor(const CGColor& color);
  /// In points; 1 at start.
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
