#include "kit/Main/Private/Launch.h"

#include <ZuviSDK/Foundation/Print.h>
#include "kit/Helper/ZVAnalyticsManager.h"
#include "kit/Helper/ZVBundle.h"
#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVMixpanelEvents.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "platform/UIKit/DesktopStyle.h"

namespace zuvi {

bool canLaunch() {
  if (*ZVKYCHelper::instance().clinetId) return true;
  print("Please register with your client ID in AppDelegate. ([ZVZuvi "
        "registerWithToken:'clientID'])");
  return false;
}

void launch(bool animated) {
  ZVKYCHelper& helper = ZVKYCHelper::instance();
  ZVAnalyticsManager::track(MixpanelEvent::zuviButtonClicked);
  const auto asked = helper.style(); // for the whole run: its screens are made one after another
  setDark((asked == UIUserInterfaceStyle::Unspecified ? desktopStyle() : asked) ==
          UIUserInterfaceStyle::Dark);
  const auto shell = make<ZVRootViewController>();
  helper.rootVC = shell;
  if (helper.identity()) shell->isOnlyFaceScan = true;
  if (const auto screen = zvKYCCurrentViewController()) screen->present(shell, animated);
}

} // namespace zuvi
