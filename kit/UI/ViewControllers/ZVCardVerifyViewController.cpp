#include "kit/UI/ViewControllers/ZVCardVerifyViewController.h"

#include <ZuviSDK/UIKit/NibDeclaration.h>
#include <ZuviSDK/UIKit/UIImage.h>
#include "kit/Helper/Palette.h"
#include "kit/Helper/ZVDocument+Presentation.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/DocumentStep.h"
#include "kit/UI/ViewControllers/ZVKYCCameraViewController.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "kit/UI/ViewControllers/ZVUploadViewController.h"

namespace zuvi {

ZVCardVerifyViewController::ZVCardVerifyViewController()
    : ZVScreen(name), merchant(ZVKYCHelper::instance().merchant) {}

void ZVCardVerifyViewController::declareNib(NibDeclaration& nib) {
  nib.outlet("imageView", imageView);
  nib.outlet("retakeButton", retakeButton);
  nib.outlet("titleLabel", titleLabel);
  nib.action("retakeButtonTap", [this] { retakeButtonTap(); });
}

void ZVCardVerifyViewController::viewDidLoad() {
  ZVScreen::viewDidLoad();
  setPrompt("verifyTitle");
  if (const auto button = retakeButton.lock()) button->setTitle(localized("retake"));
  if (const auto view = imageView.lock()) {
    view->setImage(UIImage::fromData(imageData));
    view->layer()->setBorderWidth(3);
    view->layer()->setBorderColor(paletteColor("photoLine"));
  }
}

void ZVCardVerifyViewController::viewDidLayoutSubviews() {
  ZVScreen::viewDidLayoutSubviews();
  if (const auto view = imageView.lock()) view->layer()->setCornerRadius(8);
}

void ZVCardVerifyViewController::viewWillAppear(bool animated) {
  ZVScreen::viewWillAppear(animated);
  const auto document = merchant->document(isRequired, documentIndex);
  ZVRootViewController& shell = ZVScreen::shell();
  shell.showBackButton = true;
  shell.titleText = documentTitle(document);
  shell.desc = std::nullopt;
  shell.currentPage = 2;
  shell.bottomButtonTitle = "continue"; // this word in every language
  setBottomButtonAction([this, document] {
    if (document) goOn(*document);
  });
}

void ZVCardVerifyViewController::setPrompt(const char* key) {
  if (const auto label = titleLabel.lock()) label->setText(localized(key));
}

void ZVCardVerifyViewController::showError() {
  setPrompt("faceErrorTitle");
}

std::string ZVCardVerifyViewController::announcement() const {
  const auto label = titleLabel.lock();
  return ZVScreen::announcement() + " " + (label ? label->text().value_or("") : "");
}

void ZVCardVerifyViewController::goOn(ZVDocument document) {
  setPrompt("verifyTitle");
  const DocumentStep step{isRequired, documentIndex, identityId};
  if (scanBackSide(document))
    show(backCamera(step, imageData));
  else
    show(documentUpload(step, imageData, std::nullopt));
}

void ZVCardVerifyViewController::retakeButtonTap() {
  if (auto* stack = navigationController()) stack->popViewController(true);
}

} // namespace zuvi
