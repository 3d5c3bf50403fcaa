#include <ZuviSDK/UIKit/UIControl.h>

#include <ZuviSDK/UIKit/KeyPress.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include "platform/UIKit/NibValues.h"
#include "platform/UIKit/UIScrollView.h"

#include <cmath>
#include <vector>

namespace zuvi {

namespace {
// A finger is blunt: it may slip this far off the control, in points, and still mean it.
constexpr double slip = 48;
// Beyond this, in points, it no longer rests but drags.
constexpr double dragBegins = 10;
} // namespace

void UIControl::addTarget(UIControlEvent event, std::function<void()> target) {
  targets_.emplace_back(event, std::move(target));
}

void UIControl::sendActions(UIControlEvent event) {
  const auto alive = weak_from_this().lock(); // an action may take the control off the screen
  const auto targets = targets_;
  for (const auto& [trigger, target] : targets)
    if (trigger == event) target();
}

void UIControl::setEnabled(bool enabled) {
  enabled_ = enabled;
  if (!enabled) touchCancelled();
  setNeedsDisplay();
}

void UIControl::setHighlighted(bool highlighted) {
  highlighted_ = highlighted;
}

UIView* UIControl::hitTest(CGPoint point) {
  // What a control is made of hears nothing by itself.
  return UIView::hitTest(point) ? this : nullptr;
}

bool UIControl::reaches(CGPoint point) const {
  return CGRectInset(bounds(), -slip, -slip).contains(point);
}

void UIControl::touchBegan(CGPoint point) {
  if (!enabled_) return;
  tracking_ = true;
  touchStart_ = point;
  setHighlighted(true);
  sendActions(UIControlEvent::TouchDown);
}

void UIControl::touchMoved(CGPoint point) {
  if (!tracking_) return;
  if (std::hypot(point.x - touchStart_.x, point.y - touchStart_.y) > dragBegins && handOver(point))
    return;
  if (tracking_ && reaches(point) != highlighted_) setHighlighted(reaches(point));
}

/// A finger that drags means the contents around the control, where they can be moved.
bool UIControl::handOver(CGPoint point) {
  for (UIView* up = superview(); up; up = up->superview()) {
    auto* scroller = dynamic_cast<UIScrollView*>(up);
    if (!scroller || !scroller->canScroll()) continue;
    const CGPoint place = scroller->convertFromScreen(convertToScreen(point));
    UIApplication::shared().takeOverTouch(*scroller);
    scroller->touchBegan(place);
    return true;
  }
  return false;
}

void UIControl::touchEnded(CGPoint point) {
  if (!tracking_) return;
  tracking_ = false;
  if (highlighted_) setHighlighted(false);
  sendActions(reaches(point) ? UIControlEvent::TouchUpInside : UIControlEvent::TouchUpOutside);
}

void UIControl::touchCancelled() {
  if (!tracking_) return;
  tracking_ = false;
  setHighlighted(false);
}

void UIControl::layoutSubviews() {
  UIView::layoutSubviews();
  if (focusRing_ && isFirstResponder()) UIControl::didChangeFirstResponder(true); // at its new size
}

void UIControl::didChangeFirstResponder(bool focused) {
  if (focusRing_) focusRing_->removeFromSuperlayer();
  focusRing_ = nullptr;
  if (!focused) return;
  focusRing_ = std::make_shared<CALayer>();
  focusRing_->setFrame(CGRectInset(bounds(), -3, -3));
  focusRing_->setCornerRadius(layer()->cornerRadius() + 3);
  focusRing_->setBorderWidth(2);
  focusRing_->setBorderColor(UIColor::bytes(25, 118, 210));
  const auto halo = std::make_shared<CALayer>(); // tells the ring from a dark ground
  halo->setFrame(CGRectInset(focusRing_->bounds(), -2, -2));
  halo->setCornerRadius(focusRing_->cornerRadius() + 2);
  halo->setBorderWidth(2);
  halo->setBorderColor(UIColor::white());
  focusRing_->addSublayer(halo);
  layer()->addSublayer(focusRing_);
}

bool UIControl::keyPressed(const KeyPress& key) {
  if (key.name != "space" && key.name != "Return" && key.name != "KP_Enter") return false;
  if (!key.repeats) accessibilityActivate(); // a key that is held must not press the next screen's
  return true;
}

bool UIControl::accessibilityActivate() {
  if (enabled_) sendActions(UIControlEvent::TouchUpInside);
  return enabled_;
}

UIAccessibilityElement UIControl::accessibilityElement() const {
  UIAccessibilityElement element = UIView::accessibilityElement();
  element.role = accessibilityRole.value_or(UIAccessibilityRole::Button);
  element.enabled = enabled_;
  return element;
}

void UIControl::describe(Value::Dictionary& description) const {
  UIView::describe(description);
  description["enabled"] = enabled_;
  if (!actionName.empty()) description["action"] = actionName;
}

bool UIControl::setNibAttribute(const std::string& name, const std::string& value) {
  if (name == "enabled") return nib::withBoolean(value, [&](bool v) { setEnabled(v); });
  return UIView::setNibAttribute(name, value);
}

} // namespace zuvi
