#include "kit/Helper/LiveChat/LoadingView.h"

#include <ZuviSDK/QuartzCore/AnimationCurve.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "kit/Helper/ZVLocalization.h"

namespace zuvi {

LoadingView::LoadingView()
    : activityIndicator_(make<ActivityIndicator>()), closeButton_(make<CloseButton>()),
      errorView_(make<ErrorView>()) {
  setBackgroundColor(UIColor::white());
  errorView_->setBackgroundColor(UIColor::white());
  errorView_->reloadButton()->addTarget(UIControlEvent::TouchUpInside, [this] { reload(); });
  closeButton_->addTarget(UIControlEvent::TouchUpInside, [this] { close(); });
  closeButton_->setAlpha(0);
  activityIndicator_->outletName = "activityIndicator";
  errorView_->outletName = "errorView";
  closeButton_->outletName = "closeButton";
  addSubview(activityIndicator_);
  addSubview(errorView_);
  addSubview(closeButton_);
}

void LoadingView::show(const std::shared_ptr<UIView>& shown, UIView& other) {
  addSubview(shown);
  bringSubviewToFront(closeButton_); // a long text must not cover it
  other.removeFromSuperview();
}

void LoadingView::startAnimation() {
  activityIndicator_->startAnimation();
  show(activityIndicator_, *errorView_);
  closeButton_->accessibilityLabel = localized("close"); // the language may have changed
  closeButton_->setAlpha(0);
  UIView::animate(0.3, 3.0, {}, [this] { closeButton_->setAlpha(1.0); });
  layoutAtOnce();
}

void LoadingView::stopAnimation() {
  activityIndicator_->stopAnimation();
}

void LoadingView::displayLoadingError(const std::string& message) {
  errorView_->message = message;
  show(errorView_, *activityIndicator_);
  closeButton_->layer()->removeAllAnimations(); // else its delayed fade-in continues
  closeButton_->setAlpha(1.0);
  stopAnimation();
  layoutAtOnce();
  if (window() && window()->isSeen())
    UIAccessibility::post(UIAccessibility::Notification::Announcement, message);
}

void LoadingView::layoutAtOnce() {
  setNeedsLayout();
  layoutIfNeeded();
}

void LoadingView::reload() {
  startAnimation();
  if (const auto to = delegate.lock()) to->reload();
}

void LoadingView::close() {
  if (const auto to = delegate.lock()) to->close();
}

void LoadingView::layoutSubviews() {
  UIView::layoutSubviews();
  const CGRect all = bounds();
  activityIndicator_->sizeToFit();
  activityIndicator_->setCenter({all.midX(), all.midY() - 20.0});
  const CGSize error = errorView_->sizeThatFits({all.width - 40.0, all.height - 100.0});
  errorView_->setFrame({20.0, 0, error.width, error.height});
  errorView_->setCenter(all.center());
  closeButton_->sizeToFit();
  closeButton_->setFrame({all.width - 44.0 - 10.0, 10.0, 44.0, 44.0});
}

} // namespace zuvi
