#include "kit/Helper/LiveChat/WebViewAnimationCoordinator.h"

#include <ZuviSDK/UIKit/UIImageView.h>

#include <algorithm>
#include <utility>

namespace zuvi {

namespace {

CGRect shortened(const CGRect& frame, double height) {
  return {frame.x, frame.y, frame.width, frame.height - height};
}

/// Setting a frame and restoring it makes the page lay itself out.
void layOutPage(WKWebView& webView) {
  const CGRect frame = webView.frame();
  webView.setFrame(shortened(frame, 1.0));
  webView.setFrame(frame);
}

void standStill(UIView& view) {
  view.setTransform({});
  view.layer()->removeAllAnimations();
}

/// The curve in a set of animation options, from bits 16 and 17.
AnimationCurve curveOfOptions(unsigned options) {
  using Kind = AnimationCurve::Kind;
  constexpr Kind kinds[] = {Kind::EaseInOut, Kind::EaseIn, Kind::EaseOut, Kind::Linear};
  return {kinds[options >> 16 & 3]};
}

} // namespace

void WebViewAnimationCoordinator::coordinateAnimation(const std::shared_ptr<WKWebView>& webView,
                                                      const std::shared_ptr<UIView>& superView,
                                                      const KeyboardNotification& notification,
                                                      Completion completion) {
  const CGRect begin = notification.frameBeginForView(*superView);
  const CGRect end = notification.frameEndForView(*superView);
  // The parts of the view that the keyboard covers, before and after.
  const double height = superView->bounds().height;
  const double heightBegin = std::max(0.0, height - begin.y);
  const double heightEnd = std::max(0.0, height - end.y);
  const CGRect b = shortened(webView->frame(), heightBegin);
  const CGRect e = shortened(webView->frame(), heightEnd);
  if (e.isEmpty()) { // a scale to zero is impossible
    standStill(*webView);
    layOutPage(*webView);
    if (completion) completion(true);
    return;
  }
  const double sx = b.width / e.width, sy = b.height / e.height;
  const double tx = (b.width / 2 - e.width / 2) - (e.x - b.x);
  const double ty = heightEnd == 0 ? (b.height / 2 - e.height / 2) - (e.y - b.y)
                                   : (heightEnd * sy) / 2 - (e.y - b.y);
  const auto transform =
      CGAffineTransform::scale(sx, sy).concatenating(CGAffineTransform::translation(tx, ty));
  // The notification's number is passed on unchanged, not shifted to the options' bits.
  performAnimation(webView, superView, b, e, transform, notification.animationDuration(),
                   curveOfOptions(static_cast<unsigned>(notification.animationCurve())),
                   std::move(completion));
}

void WebViewAnimationCoordinator::performAnimation(const std::shared_ptr<WKWebView>& webView,
                                                   const std::shared_ptr<UIView>& superView,
                                                   const CGRect& maskAnimationBeginFrame,
                                                   const CGRect& maskAnimationEndFrame,
                                                   const CGAffineTransform& webViewTransform,
                                                   double duration, const AnimationCurve& curve,
                                                   Completion completion) {
  standStill(*webView);
  if (maskAnimationBeginFrame.isEmpty()) return;
  const auto picture = webView->drawHierarchy(maskAnimationBeginFrame.size());
  if (!picture) return;
  layOutPage(*webView);
  webView->scrollView()->layer()->removeAllAnimations();

  const auto mask = make<UIImageView>(picture);
  mask->setFrame(maskAnimationBeginFrame);
  superView->addSubview(mask);
  mask->layer()->removeAllAnimations();
  webView->setTransform(webViewTransform);
  webView->layer()->removeAllAnimations();
  UIView::animate(
      duration, 0, curve,
      [&] {
        mask->setFrame(maskAnimationEndFrame);
        mask->setAlpha(0);
        webView->setTransform({});
      },
      [mask, completion = std::move(completion)](bool finished) {
        mask->removeFromSuperview();
        if (completion) completion(finished);
      });
}

} // namespace zuvi
