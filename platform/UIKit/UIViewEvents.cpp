// How views hear touches, keys and focus.

#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIView.h>

namespace zuvi {

UIView* UIView::hitTest(CGPoint point) {
  // What can hardly be seen can't be touched.
  if (!isSeen() || !userInteractionEnabled_ || !pointInside(point)) return nullptr;
  for (auto view = subviews_.rbegin(); view != subviews_.rend(); ++view) {
    const auto inverse = (*view)->layer_->transformToSuperlayer().inverted();
    if (!inverse) continue;
    if (UIView* hit = (*view)->hitTest(inverse->apply(point))) return hit;
  }
  return this;
}

bool UIView::pointInside(CGPoint point) const {
  return bounds().contains(point);
}

// A touch that this view has no use for goes up, as far as somebody wants it.

void UIView::touchBegan(CGPoint point) {
  if (superview_) superview_->touchBegan(layer_->transformToSuperlayer().apply(point));
}

void UIView::touchMoved(CGPoint point) {
  if (superview_) superview_->touchMoved(layer_->transformToSuperlayer().apply(point));
}

void UIView::touchEnded(CGPoint point) {
  if (superview_) superview_->touchEnded(layer_->transformToSuperlayer().apply(point));
}

void UIView::touchCancelled() {
  if (superview_) superview_->touchCancelled();
}

bool UIView::scrollWheel(CGPoint delta) {
  return superview_ && superview_->scrollWheel(delta);
}

bool UIView::isFirstResponder() const {
  return UIApplication::shared().firstResponder() == this;
}

bool UIView::becomeFirstResponder() {
  if (!canBecomeFirstResponder() || !window()) return false;
  UIApplication::shared().setFirstResponder(this);
  return true;
}

void UIView::resignFirstResponder() {
  if (isFirstResponder()) UIApplication::shared().setFirstResponder(nullptr);
}

void UIView::endEditing(bool) {
  const UIView* focused = UIApplication::shared().firstResponder();
  if (focused && focused->isDescendantOf(*this)) UIApplication::shared().setFirstResponder(nullptr);
}

} // namespace zuvi
