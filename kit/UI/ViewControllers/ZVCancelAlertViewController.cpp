#include "kit/UI/ViewControllers/ZVCancelAlertViewController.h"

#include <ZuviSDK/UIKit/NibDeclaration.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include "kit/Helper/ZVAnalyticsManager.h"
#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Helper/ZVMixpanelEvents.h"
#include "kit/Main/Private/ZVKYCHelper.h"

namespace zuvi {

void ZVCancelAlertViewController::declareNib(NibDeclaration& nib) {
  nib.outlet("popUpView", popUpView);
  nib.outlet("titleLabel", titleLabel);
  nib.outlet("continueButton", continueButton);
  nib.outlet("cancelButton", cancelButton);
  nib.outlet("continueLabel", continueLabel);
  nib.outlet("cancelLabel", cancelLabel);
  nib.action("continueButtonTap", [this] { continueButtonTap(); });
  nib.action("cancelButtonTap", [this] { cancelButtonTap(); });
}

void ZVCancelAlertViewController::viewDidLoad() {
  ZVScreen::viewDidLoad();
  if (const auto button = cancelButton.lock())
    button->setBackgroundColor(ZVKYCHelper::instance().merchant->color);
  if (const auto label = cancelLabel.lock()) {
    label->setText(localized("cancel"));
    label->setTextColor(textColorOn(ZVKYCHelper::instance().merchant->color));
  }
  if (const auto label = continueLabel.lock()) label->setText(localized("continue"));
  if (const auto label = titleLabel.lock()) label->setText(localized("cancelTitle"));
}

std::string ZVCancelAlertViewController::announcement() const {
  return localized("cancelTitle");
}

bool ZVCancelAlertViewController::accessibilityPerformEscape() {
  continueButtonTap();
  return true;
}

void ZVCancelAlertViewController::continueButtonTap() {
  ZVAnalyticsManager::track(MixpanelEvent::zuviCancelConfirmClicked);
  dismiss(true);
}

void ZVCancelAlertViewController::cancelButtonTap() {
  ZVAnalyticsManager::track(MixpanelEvent::zuviCancelCancelClicked);
  dismiss(true);
  if (const auto listener = delegate.lock()) listener->cancelAction();
}

} // namespace zuvi
