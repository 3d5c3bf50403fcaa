#pragma once

#include <ZuviSDK/QuartzCore/AnimationCurve.h>
#include "kit/Helper/LiveChat/KeyboardNotification.h"
#include "platform/WebKit/WKWebView.h"

#include <functional>
#include <memory>

namespace zuvi {

/// Animates a page that makes room for the keyboard. A page changes its layout in one step, so a
/// picture of the old layout fades over the new one while both move. One object for each event.
class WebViewAnimationCoordinator {
public:
  using Completion = std::function<void(bool finished)>;

  /// `superView` contains the web view. If no picture can be taken, nothing moves and `completion`
  /// is never called.
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
