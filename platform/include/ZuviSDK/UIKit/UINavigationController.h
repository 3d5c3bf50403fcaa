#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/UIKit/UIViewController.h>

#include <vector>

namespace zuvi {

/// A stack of screens of which the last is on show.
class ZUVI_API UINavigationController final : public UIViewController {
public:
  /// Null makes an empty stack.
  explicit UINavigationController(std::shared_ptr<UIViewController> root);
  /// @cond
  void didMake();
  /// @endcond

  /// From the root to the top.
  const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const { return stack_; }
  /// Null when the stack is empty.
  std::shared_ptr<UIViewController> topViewController() const;
  /// What is seen: the last presented screen above the stack, else its top.
  ZUVI_HIDDEN std::shared_ptr<UIViewController> visibleViewController() const;

  /// Animated, the screen slides in from the right in 0.4 seconds. Null and a screen that stands in
  /// the stack are ignored.
  void pushViewController(std::shared_ptr<UIViewController> controller, bool animated);
  /// Takes the top away and gives it back; null when only the root is left, which stays.
  std::shared_ptr<UIViewController> popViewController(bool animated);
  /// Rewrites the stack. A new top is shown like a pushed one, or like one that was popped to when
  /// it stood in the stack before; the same top hears nothing.
  void setViewControllers(std::vector<std::shared_ptr<UIViewController>> stack, bool animated);

  /// The stack draws no bar of its own; hidden is all that it can be.
  /// @{
  bool isNavigationBarHidden() const { return true; }
  void setNavigationBarHidden(bool, bool) {}
  /// @}

  ZUVI_HIDDEN void viewDidLayoutSubviews() override;
  ZUVI_HIDDEN void viewWillDisappear(bool animated) override;

protected:
  ZUVI_HIDDEN std::vector<std::shared_ptr<UIViewController>> visibleChildren() const override;

private:
  enum class Direction { Forward, Back };
  ZUVI_HIDDEN void showTop(const std::shared_ptr<UIViewController>& old, Direction direction,
                           bool animated);

  std::vector<std::shared_ptr<UIViewController>> stack_;
  std::shared_ptr<UIViewController> shown_; ///< whose view is in place
  std::function<void()> settle_;            ///< ends the movement under way at once
};

} // namespace zuvi
