#include "kit/UI/ViewControllers/ZVVerifiedViewController.h"

#include "kit/Helper/ZVAnalyticsManager.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Helper/ZVMixpanelEvents.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"

namespace zuvi {

void ZVVerifiedViewController::viewWillAppear(bool animated) {
  ZVScreen::viewWillAppear(animated);
  ZVRootViewController& shell = ZVScreen::shell();
  shell.showBackButton = false;
  shell.titleText = localized("verifiedTitle");
  shell.desc = std::nullopt;
  shell.currentPage = -1;
  shell.bottomButtonTitle = localized("done");
  setBottomButtonAction([this] { finish(); });
}

void ZVVerifiedViewController::finish() {
  ZVAnalyticsManager::track(MixpanelEvent::finishButtonClicked);
  dismiss(true); // with the whole shell
  ZVKYCHelper::instance().success();
}

} // namespace zuvi
