#include "kit/UI/ViewControllers/ZVMainViewController.h"

#include <ZuviSDK/UIKit/NibDeclaration.h>
#include "kit/Helper/ZVLocalization.h"
#include "kit/UI/ViewControllers/ZVLiveCameraViewController.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"

namespace zuvi {

void ZVMainViewController::declareNib(NibDeclaration& nib) {
  nib.outlet("imageView", imageView);
  nib.outlet("titleLabel", titleLabel);
  nib.outlet("step1Label", step1Label);
  nib.outlet("step2Label", step2Label);
  nib.outlet("infolabel", infolabel);
}

void ZVMainViewController::viewWillAppear(bool animated) {
  ZVScreen::viewWillAppear(animated);
  if (const auto label = titleLabel.lock()) label->setText(localized("startStepTitle"));
  if (const auto label = step1Label.lock()) label->setText(localized("startStep1"));
  if (const auto label = step2Label.lock()) label->setText(localized("startStep2"));
  if (const auto label = infolabel.lock()) label->setText(localized("startInfo"));

  ZVRootViewController& shell = ZVScreen::shell();
  shell.showBackButton = false;
  shell.titleText = localized("startTitle");
  shell.desc = std::nullopt;
  shell.bottomButtonTitle = localized("startButton");
  shell.showLiveView = false;
  shell.currentPage = 0;
  setBottomButtonAction([this] { start(); });
}

void ZVMainViewController::start() {
  show(make<ZVLiveCameraViewController>());
}

} // namespace zuvi
