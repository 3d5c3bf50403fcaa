#pragma once

#include <ZuviSDK/QuartzCore/AnimationCurve.h>
#include "kit/Helper/LiveChat/KeyboardNotification.h"
#include "platform/WebKit/WKWebView.h"

#include <functional>
#include <memory>

namespace zuvi {

/// Carries the eye over while a page makes room for the keyboard: a page lays itself out in one
/// step, so a picture of the old one fades over the new one while both move. One for each event.
class WebViewAnimationCoordinator {
public:
  using Completion = std::function<void(bool finished)>;

  /// `superView` holds the web view. Where no picture can be had nothing moves, and `completion`
  /// never comes.
  void coordinateAnimation(const std::shared_ptr<WKWebView>& webView,
                           const std::shared_ptr<UIView>& superView,
                           const KeyboardNotification& notification, Completion completion = {});

private:
  static void performAnimation(const std::shared_ptr<WKWebView>& webView,
                               const std::shared_ptr<UIView>& superView,
                               const CGRect& maskAnimationBeginFrame,
                               const CGRect& maskAnimationEndFrame,
                               const CGAffineTransform& webViewTransform, double duration,
                               const AnimationCurve& curve, Completion completion);
};

} // namespace zuvi
