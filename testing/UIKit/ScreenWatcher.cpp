#include "testing/UIKit/ScreenWatcher.h"

#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UINavigationController.h>
#include <ZuviSDK/UIKit/UITabBarController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/Foundation/ClassName.h"

#include <utility>

namespace zuvi {

std::vector<std::shared_ptr<UIViewController>> screenStack() {
  std::vector<std::shared_ptr<UIViewController>> stack;
  const UIWindow* window = UIApplication::shared().keyWindow();
  std::shared_ptr<UIViewController> screen = window ? window->rootViewController() : nullptr;
  while (screen) {
    stack.push_back(screen);
    // Of a frame that presents something only that is in front; what it frames lies below.
    std::shared_ptr<UIViewController> next;
    if (!screen->parent()) next = screen->presentedViewController();
    if (const auto presented = next) {
      // What the presenter frames still belongs to the picture of the stack.
      for (auto inner = screen; !inner->children().empty();) {
        const auto navigation = std::dynamic_pointer_cast<UINavigationController>(inner);
        if (navigation)
          stack.insert(stack.end(), navigation->viewControllers().begin(),
                       navigation->viewControllers().end());
        inner = navigation ? navigation->topViewController() : inner->children().back();
        if (!navigation) stack.push_back(inner);
      }
      screen = presented;
      continue;
    }
    if (const auto navigation = std::dynamic_pointer_cast<UINavigationController>(screen)) {
      const auto& screens = navigation->viewControllers();
      if (!screens.empty()) stack.insert(stack.end(), screens.begin(), screens.end() - 1);
      next = navigation->topViewController();
    } else if (const auto tabs = std::dynamic_pointer_cast<UITabBarController>(screen)) {
      next = tabs->selectedViewController();
    } else if (!screen->children().empty()) {
      next = screen->children().back();
    }
    screen = next;
  }
  return stack;
}

std::string topScreen() {
  const auto stack = screenStack();
  return stack.empty() ? "" : className(*stack.back());
}

ScreenWatcher::ScreenWatcher(std::function<void(const std::string&)> changed)
    : changed_(std::move(changed)) {
  timer_ = Timer::scheduled(0.02, Timer::Repeats::Yes, [this] { look(); });
}

void ScreenWatcher::look() {
  const auto stack = screenStack();
  const void* top = stack.empty() ? nullptr : stack.back().get();
  if (std::exchange(shown_, top) != top && top) changed_(className(*stack.back()));
}

} // namespace zuvi
