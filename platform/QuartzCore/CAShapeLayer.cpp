#include "platform/QuartzCore/CAShapeLayer.h"

namespace zuvi {

void CAShapeLayer::setPath(CGPath path) {
  path_ = std::move(path);
  setNeedsDisplay();
}

void CAShapeLayer::setFillRule(DrawingContext::FillRule rule) {
  fillRule_ = rule;
  setNeedsDisplay();
}

void CAShapeLayer::setFillColor(const CGColor& color) {
  fillColor_ = color;
  setNeedsDisplay();
}

void CAShapeLayer::setStrokeColor(const CGColor& color) {
  strokeColor_ = color;
  setNeedsDisplay();
}

void CAShapeLayer::setLineWidth(double width) {
  lineWidth_ = width;
  setNeedsDisplay();
}

void CAShapeLayer::draw(DrawingContext& context) {
  context.fill(path_, fillColor_, fillRule_);
  context.stroke(path_, strokeColor_, lineWidth_);
}

} // namespace zuvi
