#include "kit/Helper/LiveChat/ActivityIndicator.h"

#include <ZuviSDK/UIKit/UIApplication.h>
#include "kit/Helper/LiveChat/LoadingViewDrawing.h"
#include "kit/Helper/ZVLocalization.h"
#include "platform/QuartzCore/CAAnimation.h"

#include <algorithm>
#include <numbers>

namespace zuvi {

namespace {
constexpr double ringSize = ActivityIndicatorLayer::baseSize;
constexpr double gap = 10.0; // between ring and word
constexpr const char* rotationKey = "rotationAnimation";
} // namespace

ActivityIndicator::ActivityIndicator()
    : activityIndicator_(std::make_shared<ActivityIndicatorLayer>()), label_(make<UILabel>()) {
  setBackgroundColor(UIColor::white());
  label_->setText(localized("chatLoading"));
  label_->setTextColor(darkGrey);
  label_->setTextAlignment(NSTextAlignment::Center);
  label_->setFont(UIFont::system(16.0));
  layer()->addSublayer(activityIndicator_);
  addSubview(label_);
}

void ActivityIndicator::startAnimation() {
  label_->setText(localized("chatLoading")); // the language may have changed
  const bool turning = activityIndicator_->animation(rotationKey) != nullptr;
  if (turning && animating_) return;
  animating_ = true;
  if (!turning) { // if it was stopped while hidden, it is still turning
    CABasicAnimation turn;
    turn.property = LayerProperty::Rotation;
    turn.to = layerValue(2 * std::numbers::pi);
    turn.beginTime = DispatchQueue::main().now();
    turn.duration = 1.0;
    turn.curve.kind = AnimationCurve::Kind::Linear;
    turn.repeatsForever = true;
    activityIndicator_->addAnimation(rotationKey, turn);
  }
  observer_ = NotificationCenter::defaultCenter().observe(
      UIApplicationDidBecomeActiveNotification,
      [this](const Notification&) { applicationDidBecomeActive(); });
}

void ActivityIndicator::stopAnimation() {
  animating_ = false;
  observer_ = {};
}

void ActivityIndicator::applicationDidBecomeActive() {
  if (animating_) startAnimation();
}

void ActivityIndicator::didMoveToSuperview() {
  if (animating_) startAnimation();
}

void ActivityIndicator::didMoveToWindow() {
  if (animating_) startAnimation();
}

CGSize ActivityIndicator::sizeThatFits(CGSize) const {
  const CGSize text = label_->sizeThatFits({-1, -1});
  return {std::max(ringSize, text.width), text.height + ringSize + gap};
}

void ActivityIndicator::layoutSubviews() {
  UIView::layoutSubviews();
  activityIndicator_->setFrame({(bounds().width - ringSize) / 2, 0, ringSize, ringSize});
  activityIndicator_->layoutSublayers();
  label_->sizeToFit();
  const CGSize text = label_->bounds().size();
  label_->setFrame({(bounds().width - text.width) / 2, ringSize + gap, text.width, text.height});
}

void ActivityIndicator::describe(Value::Dictionary& description) const {
  UIView::describe(description);
  description["animating"] = animating_;
}

} // namespace zuvi
