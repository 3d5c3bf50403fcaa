#include "kit/UI/ViewControllers/ZVScreen.h"

#include "kit/Helper/ZVBundle.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"

#include <utility>

namespace zuvi {

ZVScreen::ZVScreen(const char* name) : UIViewController(name, zvKitBundle()) {}

void ZVScreen::viewDidAppear(bool animated) {
  UIViewController::viewDidAppear(animated);
  if (const std::string text = announcement(); !text.empty())
    UIAccessibility::post(UIAccessibility::Notification::Announcement, text);
}

std::string ZVScreen::announcement() const {
  const std::string title = shell().titleText->value_or(""), more = shell().desc->value_or("");
  return more.empty() ? title : title + " " + more;
}

ZVRootViewController& ZVScreen::shell() {
  return *ZVKYCHelper::instance().rootVC;
}

void ZVScreen::setBottomButtonAction(std::function<void()> action) {
  // A key can still reach the button while the next screen covers or hides it.
  shell().bottomButtonAction = [self = weak_from_this(), action = std::move(action)] {
    const auto screen = self.lock();
    if (!screen) return;
    const Appearance now = screen->appearance();
    if (now == Appearance::Appearing || now == Appearance::Appeared) action();
  };
}

} // namespace zuvi
