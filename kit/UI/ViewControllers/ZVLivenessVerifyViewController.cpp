#include "kit/UI/ViewControllers/ZVLivenessVerifyViewController.h"

#include <ZuviSDK/UIKit/NibDeclaration.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include "kit/Helper/ZVAnalyticsManager.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Helper/ZVMixpanelEvents.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "kit/UI/ViewControllers/ZVUploadViewController.h"

namespace zuvi {

void ZVLivenessVerifyViewController::declareNib(NibDeclaration& nib) {
  nib.outlet("titleLabel", titleLabel);
  nib.outlet("retakeButton", retakeButton);
  nib.action("retakeButtonTap", [this] { retakeButtonTap(); });
}

void ZVLivenessVerifyViewController::viewDidLoad() {
  ZVScreen::viewDidLoad();
  if (const auto label = titleLabel.lock()) label->setText(localized("livenessConfirmText"));
  if (const auto button = retakeButton.lock()) button->setTitle(localized("retake"));
}

void ZVLivenessVerifyViewController::viewWillAppear(bool animated) {
  ZVScreen::viewWillAppear(animated);
  ZVRootViewController& shell = ZVScreen::shell();
  shell.showBackButton = true;
  shell.titleText = localized("livenessTitle");
  shell.desc = std::nullopt;
  shell.currentPage = -1;
  shell.bottomButtonTitle = localized("continue");
  setBottomButtonAction([this] { confirm(); });
}

std::string ZVLivenessVerifyViewController::announcement() const {
  return ZVScreen::announcement() + " " + localized("livenessConfirmText");
}

void ZVLivenessVerifyViewController::confirm() {
  ZVAnalyticsManager::track(MixpanelEvent::livenessUploadConfirmClicked);
  const auto upload = make<ZVUploadViewController>();
  upload->video = video;
  show(upload);
}

void ZVLivenessVerifyViewController::retakeButtonTap() {
  ZVAnalyticsManager::track(MixpanelEvent::livenessUploadCancelRetake);
  if (auto* stack = navigationController()) stack->popViewController(true);
}

} // namespace zuvi
