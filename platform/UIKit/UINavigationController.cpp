#include <ZuviSDK/UIKit/UINavigationController.h>

#include <ZuviSDK/UIKit/UIApplication.h>
#include "platform/UIKit/Transition.h"

#include <algorithm>
#include <utility>

namespace zuvi {

UINavigationController::UINavigationController(std::shared_ptr<UIViewController> root)
    : stack_{std::move(root)} {}

void UINavigationController::didMake() {
  if (stack_.front())
    addChild(stack_.front());
  else
    stack_.clear();
}

std::shared_ptr<UIViewController> UINavigationController::topViewController() const {
  return stack_.empty() ? nullptr : stack_.back();
}

std::shared_ptr<UIViewController> UINavigationController::visibleViewController() const {
  if (auto presented = presentedViewController()) return presented;
  return topViewController();
}

std::vector<std::shared_ptr<UIViewController>> UINavigationController::visibleChildren() const {
  if (stack_.empty()) return {};
  return {stack_.back()};
}

void UINavigationController::viewDidLayoutSubviews() {
  UIViewController::viewDidLayoutSubviews();
  view()->setClipsToBounds(true);
  if (!shown_ && !stack_.empty()) {
    shown_ = stack_.back();
    view()->addSubview(shown_->view());
  }
  for (const auto& subview : view()->subviews()) {
    subview->setBounds({0, 0, view()->bounds().width, view()->bounds().height});
    subview->setCenter(view()->bounds().center());
  }
}

void UINavigationController::viewWillDisappear(bool animated) {
  UIViewController::viewWillDisappear(animated);
  if (settle_) std::exchange(settle_, nullptr)(); // the top has appeared before it disappears
}

void UINavigationController::pushViewController(std::shared_ptr<UIViewController> controller,
                                                bool animated) {
  if (!controller || std::find(stack_.begin(), stack_.end(), controller) != stack_.end()) return;
  const auto old = topViewController();
  addChild(controller);
  stack_.push_back(std::move(controller));
  showTop(old, Direction::Forward, animated);
}

std::shared_ptr<UIViewController> UINavigationController::popViewController(bool animated) {
  if (stack_.size() < 2) return nullptr;
  auto popped = stack_.back();
  stack_.pop_back();
  showTop(popped, Direction::Back, animated);
  popped->removeFromParent();
  return popped;
}

void UINavigationController::setViewControllers(
    std::vector<std::shared_ptr<UIViewController>> stack, bool animated) {
  std::erase(stack, nullptr);
  if (stack.empty()) return;
  const auto old = topViewController();
  const auto before = std::exchange(stack_, std::move(stack));
  for (const auto& controller : stack_)
    addChild(controller);
  const bool known = std::find(before.begin(), before.end(), stack_.back()) != before.end();
  if (old != stack_.back()) showTop(old, known ? Direction::Back : Direction::Forward, animated);
  for (const auto& controller : before)
    if (std::find(stack_.begin(), stack_.end(), controller) == stack_.end())
      controller->removeFromParent();
}

void UINavigationController::showTop(const std::shared_ptr<UIViewController>& old,
                                     Direction direction, bool animated) {
  if (!isViewLoaded()) return; // shown when the stack itself is
  if (settle_) std::exchange(settle_, nullptr)();
  const auto top = stack_.back();
  const bool onShow = appearance() == Appearance::Appeared || appearance() == Appearance::Appearing;
  animated = animated && appearance() == Appearance::Appeared && view()->window();

  const auto incoming = top->view();
  const auto outgoing = old && old->isViewLoaded() ? old->view() : nullptr;
  if (onShow && old) old->beginAppearanceTransition(false, animated);
  if (onShow) top->beginAppearanceTransition(true, animated);
  shown_ = top;
  incoming->setTransform({});
  incoming->setFrame(view()->bounds());
  const auto& views = view()->subviews();
  const auto below = std::find(views.begin(), views.end(), outgoing);
  if (direction == Direction::Back && below != views.end())
    view()->insertSubview(incoming, static_cast<std::size_t>(below - views.begin()));
  else
    view()->addSubview(incoming);
  view()->layoutIfNeeded();

  const double width = view()->bounds().width;
  const auto right = CGAffineTransform::translation(width, 0);
  const auto left = CGAffineTransform::translation(-0.3 * width, 0);
  const bool forward = direction == Direction::Forward;
  if (animated) incoming->setTransform(forward ? right : left);
  const std::weak_ptr<UIViewController> self = weak_from_this();
  auto settle = runTransition(
      animated, 0.4,
      [&] {
        incoming->setTransform({});
        if (outgoing && animated) outgoing->setTransform(forward ? left : right);
      },
      [self, this, old, outgoing, top, onShow] {
        const auto alive = self.lock();
        if (alive) settle_ = nullptr;
        if (outgoing) {
          outgoing->removeFromSuperview();
          outgoing->setTransform({});
        }
        if (!alive || !onShow) return;
        if (old) old->endAppearanceTransition();
        // While the stack itself is on its way in, its top arrives with it.
        if (appearance() != Appearance::Appearing) top->endAppearanceTransition();
        if (top == shown_) UIApplication::shared().moveFocusInto(*top);
      });
  if (animated) settle_ = std::move(settle);
}

} // namespace zuvi
