#include "kit/UI/ViewControllers/ZVScreen.h"

#include <ZuviSDK/UIKit/UINib.h>
#include "kit/Helper/ZVNibs.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "kit/UI/Views/ZVDocumentButton.h"
#include "kit/UI/Views/ZVDocumentTableViewCell.h"

#include <utility>

namespace zuvi {

namespace {

/// The bundle for the nibs of screens, whose view classes it makes known first.
std::shared_ptr<const Bundle> screenBundle() {
  [[maybe_unused]] static const bool known = [] {
    UINib::registerClass<ZVDocumentButton>("ZVDocumentButton");
    UINib::registerClass<ZVDocumentTableViewCell>("ZVDocumentTableViewCell");
    return true;
  }();
  return zvNibBundle();
}

} // namespace

ZVScreen::ZVScreen(const char* name) : UIViewController(name, screenBundle()) {}

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
