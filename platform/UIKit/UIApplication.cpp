#include <ZuviSDK/UIKit/UIApplication.h>

#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/Dispatch/AssertMainQueue.h"
#include "platform/UIKit/UIScreen.h"
#include "platform/UIKit/UIScrollView.h"
#include "platform/UIKit/URLOpener.h"

#include <utility>

namespace zuvi {

UIApplication& UIApplication::shared() {
  assertMainQueue("The application");
  // Never destroyed: views that outlive `main` still find it.
  static auto* application = new UIApplication;
  return *application;
}

bool UIApplication::openURL(const URL& url) {
  return opener_ ? opener_(url) : openWithDesktop(url);
}

bool UIApplication::canOpenURL(const URL& url) const {
  if (opener_) return !canOpen_ || canOpen_(url);
  return desktopCanOpen(url);
}

void UIApplication::setActive(bool active) {
  if (active == active_) return;
  active_ = active;
  NotificationCenter::defaultCenter().post(active ? UIApplicationDidBecomeActiveNotification
                                                  : UIApplicationWillResignActiveNotification);
}

// Touches

UIView* UIApplication::hitTest(CGPoint point) const {
  const auto& windows = UIScreen::main().windows();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window)
    if (UIView* hit = (*window)->hitTest((*window)->convertFromScreen(point))) return hit;
  return nullptr;
}

void UIApplication::touchBegan(CGPoint point) {
  keyboardInUse_ = false;
  if (touched_) touchCancelled();
  if (isIgnoringInteractionEvents()) return;
  UIScreen::main().layoutIfNeeded();
  touched_ = hitTest(point);
  if (!touched_) return;
  const auto alive = touched_->weak_from_this().lock(); // an action may take it off the screen
  touched_->touchBegan(touched_->convertFromScreen(point));
}

void UIApplication::touchMoved(CGPoint point) {
  if (!touched_) return;
  const auto alive = touched_->weak_from_this().lock();
  touched_->touchMoved(touched_->convertFromScreen(point));
}

void UIApplication::touchEnded(CGPoint point) {
  UIView* view = std::exchange(touched_, nullptr);
  if (!view) return;
  const auto alive = view->weak_from_this().lock(); // its action may take it off the screen
  view->touchEnded(view->convertFromScreen(point));
}

void UIApplication::touchCancelled() {
  if (UIView* view = std::exchange(touched_, nullptr)) view->touchCancelled();
}

void UIApplication::beginIgnoringInteractionEvents() {
  ignoring_++;
  touchCancelled();
}

void UIApplication::takeOverTouch(UIView& scroller) {
  if (!touched_ || touched_ == &scroller || !touched_->isDescendantOf(scroller)) return;
  UIView* view = std::exchange(touched_, &scroller);
  view->touchCancelled();
}

bool UIApplication::scrollWheel(CGPoint point, CGPoint delta) {
  if (isIgnoringInteractionEvents()) return true;
  UIView* hit = hitTest(point);
  return hit && hit->scrollWheel(delta);
}

bool UIApplication::canScrollAt(CGPoint point) const {
  for (const UIView* view = hitTest(point); view; view = view->superview())
    if (const auto* scroller = dynamic_cast<const UIScrollView*>(view);
        scroller && scroller->canScroll())
      return true;
  return false;
}

void UIApplication::viewWillGo(UIView& view) {
  if (touched_ && touched_->isDescendantOf(view)) {
    UIView* touched = std::exchange(touched_, nullptr);
    if (touched != &view || view.weak_from_this().lock()) touched->touchCancelled();
  }
  if (firstResponder_ && firstResponder_->isDescendantOf(view)) {
    if (firstResponder_ == &view && !view.weak_from_this().lock())
      firstResponder_ = nullptr; // being destroyed: too late to tell it
    else
      setFirstResponder(nullptr);
  }
}

void UIApplication::windowWillGo(UIWindow& window) {
  if (keyWindow_ == &window) keyWindow_ = nullptr;
}

} // namespace zuvi
