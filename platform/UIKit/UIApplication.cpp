#include "platform/UIKit/UIApplication.h"

#include "platform/Foundation/NotificationCenter.h"
#include "platform/UIKit/UIControl.h"
#include "platform/UIKit/UIScreen.h"
#include "platform/UIKit/UIWindow.h"
#include "platform/UIKit/URLOpener.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace zuvi {

UIApplication& UIApplication::shared() {
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

void UIApplication::scrollWheel(CGPoint point, CGPoint delta) {
  if (isIgnoringInteractionEvents()) return;
  if (UIView* hit = hitTest(point)) hit->scrollWheel(delta);
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

// Keys and focus

void UIApplication::setFirstResponder(UIView* view) {
  if (view == firstResponder_) return;
  UIView* old = std::exchange(firstResponder_, view);
  if (old) old->didChangeFirstResponder(false);
  if (view && view == firstResponder_) view->didChangeFirstResponder(true);
}

void UIApplication::keyPressed(const KeyPress& key) {
  if (isIgnoringInteractionEvents()) return;
  if (firstResponder_) {
    const auto alive = firstResponder_->weak_from_this().lock();
    if (firstResponder_->keyPressed(key)) return;
  }
  if (key.name == "Tab" || key.name == "ISO_Left_Tab")
    moveFocus(key.shift || key.name == "ISO_Left_Tab");
}

namespace {

void collectFocusable(const UIView& view, std::vector<UIView*>& found) {
  for (const auto& subview : view.subviews()) {
    if (subview->isHidden() || subview->alpha() < 0.01 || !subview->isUserInteractionEnabled())
      continue;
    if (subview->canBecomeFirstResponder()) found.push_back(subview.get());
    collectFocusable(*subview, found);
  }
}

} // namespace

void UIApplication::moveFocus(bool backwards) {
  // The topmost window that has something to focus; within it the sheet on top of the others.
  const auto& windows = UIScreen::main().windows();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    const auto& sheets = (*window)->subviews();
    for (auto sheet = sheets.rbegin(); sheet != sheets.rend(); ++sheet) {
      std::vector<UIView*> order;
      collectFocusable(**sheet, order);
      // What lies under something else can't be reached by touch, so neither by key.
      std::erase_if(order, [this](const UIView* view) {
        const UIView* hit = hitTest(view->convertToScreen(view->bounds()).center());
        return !hit || !hit->isDescendantOf(*view);
      });
      if (order.empty()) continue;
      const auto now = std::find(order.begin(), order.end(), firstResponder_);
      std::size_t next = backwards ? order.size() - 1 : 0;
      if (now != order.end()) {
        const auto index = static_cast<std::size_t>(now - order.begin());
        next = (index + (backwards ? order.size() - 1 : 1)) % order.size();
      }
      setFirstResponder(order[next]);
      return;
    }
  }
}

} // namespace zuvi
