#include <ZuviSDK/UIKit/UIActivityIndicatorView.h>

#include "platform/QuartzCore/CAAnimation.h"
#include "platform/QuartzCore/CAShapeLayer.h"
#include "platform/UIKit/NibValues.h"

#include <algorithm>
#include <numbers>

namespace zuvi {

UIActivityIndicatorView::UIActivityIndicatorView() : arc_(std::make_shared<CAShapeLayer>()) {
  arc_->setFillColor(UIColor::clear());
  arc_->setStrokeColor(color_);
  arc_->setHidden(true);
  layer()->addSublayer(arc_);
}

void UIActivityIndicatorView::startAnimating() {
  if (animating_) return;
  animating_ = true;
  arc_->setHidden(false);
  CABasicAnimation turn;
  turn.property = LayerProperty::Rotation;
  turn.to = layerValue(2 * std::numbers::pi);
  turn.beginTime = DispatchQueue::main().now();
  turn.duration = 0.9;
  turn.curve.kind = AnimationCurve::Kind::Linear;
  turn.repeatsForever = true;
  arc_->addAnimation("turn", turn);
}

void UIActivityIndicatorView::stopAnimating() {
  animating_ = false;
  arc_->setHidden(true);
  arc_->removeAnimation("turn");
}

void UIActivityIndicatorView::setColor(const UIColor& color) {
  color_ = color;
  arc_->setStrokeColor(color);
}

void UIActivityIndicatorView::layoutSubviews() {
  UIView::layoutSubviews();
  arc_->setFrame(bounds());
  const double side = std::min(bounds().width, bounds().height);
  const double width = std::max(2.0, side / 12);
  CGPath path;
  path.arc(bounds().center(), std::max(0.0, (side - width) / 2), -std::numbers::pi / 2,
           std::numbers::pi);
  arc_->setLineWidth(width);
  arc_->setPath(std::move(path));
}

UIAccessibilityElement UIActivityIndicatorView::accessibilityElement() const {
  UIAccessibilityElement element = UIView::accessibilityElement();
  if (!accessibilityRole && animating_) element.role = UIAccessibilityRole::Progress;
  element.busy = animating_;
  return element;
}

void UIActivityIndicatorView::describe(Value::Dictionary& description) const {
  UIView::describe(description);
  description["animating"] = animating_;
  description["tint"] = textFromColor(color_);
}

bool UIActivityIndicatorView::setNibAttribute(const std::string& name, const std::string& value) {
  if (name == "color") return nib::withColor(value, [&](const UIColor& v) { setColor(v); });
  if (name == "animating")
    return nib::withBoolean(value, [&](bool v) { v ? startAnimating() : stopAnimating(); });
  return UIView::setNibAttribute(name, value);
}

} // namespace zuvi
