// How views come to their frames.

#include <ZuviSDK/UIKit/UIView.h>
#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/Dispatch/AssertMainQueue.h"
#include "platform/QuartzCore/AnimationRetargeting.h"
#include "platform/UIKit/ConstraintSolver.h"
#include "platform/UIKit/UIScreen.h"

#include <algorithm>

namespace zuvi {

void UIView::setNeedsLayout() {
  assertMainQueue("A view");
  needsLayout_ = true;
  markLayoutPath();
}

void UIView::setNeedsLayoutBelow() {
  setNeedsLayout();
  for (const auto& subview : subviews_)
    subview->setNeedsLayoutBelow();
}

void UIView::markLayoutPath() {
  for (UIView* view = this; view; view = view->superview_) {
    view->layoutBelow_ = true;
    if (!view->superview_ && view->window()) UIScreen::main().setNeedsLayout();
  }
}

void UIView::layoutIfNeeded() {
  const auto self = weak_from_this().lock(); // a hook may remove this view
  const AnimationRetargeting follow; // what is on its way gets to its new place all the same
  // A hook may mark a view again, but one that does so every time must not hang the program.
  for (int round = 0; round < 8 && layoutBelow_; round++)
    layoutTree();
}

void UIView::layoutTree() {
  layoutBelow_ = false;
  if (std::exchange(needsLayout_, false)) {
    if (controller_) controller_->viewWillLayoutSubviews();
    layoutSubviews();
    if (controller_) controller_->viewDidLayoutSubviews();
  }
  const auto below = subviews_;
  for (const auto& subview : below)
    if (subview->layoutBelow_) subview->layoutTree();
}

void UIView::layoutSubviews() {
  if (constraints_.empty()) return;
  const ConstraintSolver solver(*this, bounds().width, bounds().height);
  for (const auto& [view, frame] : solver.frames())
    if (view->superview_ == this) {
      // A transformed view is placed by its centre; its frame is only the box around it.
      view->setBounds({view->bounds().x, view->bounds().y, frame.width, frame.height});
      view->setCenter(frame.center());
    }
}

CGSize UIView::intrinsicContentSize() const {
  return {-1, -1};
}

CGSize UIView::sizeThatFits(CGSize size) const {
  if (!constraints_.empty() && size.width >= 0) {
    const ConstraintSolver solver(*this, size.width, std::nullopt);
    return {size.width, solver.height().value_or(-1)};
  }
  return intrinsicContentSize();
}

void UIView::sizeToFit() {
  const CGSize fit = sizeThatFits({-1, -1});
  const CGRect now = frame();
  setFrame({now.x, now.y, fit.width < 0 ? now.width : fit.width,
            fit.height < 0 ? now.height : fit.height});
}

void UIView::invalidateIntrinsicContentSize() {
  // Views above may take their height from this one's.
  for (UIView* view = this; view; view = view->superview_)
    if (view == this || !view->constraints_.empty()) view->needsLayout_ = true;
  markLayoutPath();
}

void UIView::addConstraint(std::shared_ptr<NSLayoutConstraint> constraint) {
  constraint->owner = weak_from_this();
  constraints_.push_back(std::move(constraint));
  setNeedsLayout();
}

UIEdgeInsets UIView::safeAreaInsets() const {
  const UIWindow* onWindow = window();
  if (!onWindow) return {};
  // What the insets of the screen leave of this view, wherever it stands now.
  const UIEdgeInsets screen = UIScreen::main().safeAreaInsets();
  const CGRect all = UIScreen::main().bounds();
  const CGRect mine = convertToScreen(bounds());
  const auto reach = [&mine](const CGRect& around, const UIEdgeInsets& insets) -> UIEdgeInsets {
    return {std::clamp(around.minY() + insets.top - mine.minY(), 0.0, insets.top),
            std::clamp(around.minX() + insets.left - mine.minX(), 0.0, insets.left),
            std::clamp(mine.maxY() - (around.maxY() - insets.bottom), 0.0, insets.bottom),
            std::clamp(mine.maxX() - (around.maxX() - insets.right), 0.0, insets.right)};
  };
  UIEdgeInsets insets = reach(all, screen);
  for (const UIView* view = this; view; view = view->superview_) {
    const UIEdgeInsets more =
        view->controller_ ? view->controller_->additionalSafeAreaInsets() : UIEdgeInsets{};
    if (more == UIEdgeInsets{}) continue;
    const UIEdgeInsets there = reach(view->convertToScreen(view->bounds()), more);
    insets = {std::max(insets.top, there.top), std::max(insets.left, there.left),
              std::max(insets.bottom, there.bottom), std::max(insets.right, there.right)};
  }
  return insets;
}

} // namespace zuvi
