// Keys, and how the focus goes among the views.

#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIControl.h>
#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/UIKit/UIScreen.h"
#include "platform/UIKit/UIScrollView.h"

#include <algorithm>
#include <utility>

namespace zuvi {

namespace {

/// What lies under something else can't be reached by touch, so neither by key; what has only been
/// scrolled away comes back.
bool isWithinReach(const UIView& view) {
  if (!view.window()) return false;
  for (const UIView* up = &view; up; up = up->superview())
    if (!up->isSeen() || !up->isUserInteractionEnabled()) return false;
  if (isScrolledOut(view)) return true;
  const UIView* hit = UIApplication::shared().hitTest(view.convertToScreen(view.bounds()).center());
  return hit && hit->isDescendantOf(view);
}

void collectFocusable(UIView& view, std::vector<UIView*>& found) {
  if (!view.isSeen() || !view.isUserInteractionEnabled()) return;
  if (view.canBecomeFirstResponder() && isWithinReach(view)) found.push_back(&view);
  for (const auto& subview : view.subviews())
    collectFocusable(*subview, found);
}

std::vector<UIView*> focusableIn(UIView& view) {
  std::vector<UIView*> found;
  collectFocusable(view, found);
  return found;
}

/// In the topmost window that has something to focus, the sheet on top of the others.
std::vector<UIView*> focusableOnScreen() {
  const auto& windows = UIScreen::main().windows();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    if (!(*window)->isSeen()) continue;
    const auto& sheets = (*window)->subviews();
    for (auto sheet = sheets.rbegin(); sheet != sheets.rend(); ++sheet)
      if (auto found = focusableIn(**sheet); !found.empty()) return found;
  }
  return {};
}

bool passUp(UIView* view, const KeyPress& key) {
  for (; view; view = view->superview()) {
    const auto alive = view->weak_from_this().lock(); // its action may take it off the screen
    if (view->keyPressed(key)) return true;
  }
  return false;
}

} // namespace

void UIApplication::setFirstResponder(UIView* view) {
  if (view == firstResponder_) return;
  UIView* old = std::exchange(firstResponder_, view);
  if (old) old->didChangeFirstResponder(false);
  if (!view || view != firstResponder_) return;
  view->didChangeFirstResponder(true);
  for (UIView* up = view->superview(); up; up = up->superview())
    if (auto* scroller = dynamic_cast<UIScrollView*>(up))
      scroller->scrollRectToVisible(scroller->convert(view->bounds(), view));
  UIScreen::main().setNeedsFrame(); // assistive technology follows the focus
}

bool UIApplication::keyPressed(const KeyPress& key) {
  keyboardInUse_ = true;
  if (isIgnoringInteractionEvents()) return true;
  // A control may have been hidden or covered while it had the focus.
  if (dynamic_cast<UIControl*>(firstResponder_) && !isWithinReach(*firstResponder_))
    setFirstResponder(nullptr);
  UIView* first = firstResponder_;
  if (!first) { // what scrolls does so without the focus
    first = hitTest(UIScreen::main().bounds().center());
    while (first && !dynamic_cast<UIScrollView*>(first))
      first = first->superview();
  }
  if (passUp(first, key)) return true;
  if (key.isTab()) return moveFocus(key.isBackTab());
  return key.name == "Escape" && (key.repeats || performEscape());
}

bool UIApplication::isFocusAtEnd(bool backwards) const {
  const auto order = focusableOnScreen();
  return order.empty() || firstResponder_ == (backwards ? order.front() : order.back());
}

bool UIApplication::moveFocus(bool backwards) {
  const auto order = focusableOnScreen();
  if (order.empty()) return false;
  const auto now = std::find(order.begin(), order.end(), firstResponder_);
  std::size_t next = backwards ? order.size() - 1 : 0;
  if (now != order.end()) {
    const auto index = static_cast<std::size_t>(now - order.begin());
    next = (index + (backwards ? order.size() - 1 : 1)) % order.size();
  }
  setFirstResponder(order[next]);
  return true;
}

bool UIApplication::performEscape() {
  const auto& windows = UIScreen::main().windows();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    const auto top = (*window)->isSeen() ? (*window)->topViewController() : nullptr;
    if (top && top->accessibilityPerformEscape()) return true;
  }
  return false;
}

void UIApplication::moveFocusInto(UIViewController& screen) {
  if (!keyboardInUse_ || !screen.view()->window()) return;
  UIScreen::main().layoutIfNeeded();
  for (UIViewController* up = &screen; up; up = up->parent())
    if (UIView* preferred = up->preferredFocusView(); preferred && isWithinReach(*preferred))
      return setFirstResponder(preferred);
  // No key may do by surprise what comes first; Tab leads there.
  if (firstResponder_ && !isWithinReach(*firstResponder_)) setFirstResponder(nullptr);
}

bool UIApplication::focusFirstIn(UIView& view) {
  const auto inside = focusableIn(view);
  if (!inside.empty()) setFirstResponder(inside.front());
  return !inside.empty();
}

bool UIApplication::moveFocusBack(const std::weak_ptr<UIView>& view) {
  const auto before = view.lock();
  if (!keyboardInUse_ || !before || !isWithinReach(*before)) return false;
  setFirstResponder(before.get());
  return true;
}

} // namespace zuvi
