#include "kit/UI/ViewControllers/ZVKYCCameraViewController.h"

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/UIKit/NibDeclaration.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include "kit/Helper/ZVDocument+Presentation.h"
#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/CameraKeeper.h"
#include "kit/UI/ViewControllers/CameraSetup.h"
#include "kit/UI/ViewControllers/DocumentStep.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "kit/UI/ViewControllers/ZVUploadViewController.h"
#include "platform/AVFoundation/AVCaptureSession.h"
#include "platform/AVFoundation/AVCaptureStillImageOutput.h"
#include "platform/AVFoundation/AVCaptureVideoPreviewLayer.h"

namespace zuvi {

namespace {

// Seconds
constexpr double outlineShows = 2.0;
constexpr double outlineFades = 0.2;
constexpr double flashFades = 0.5;

std::shared_ptr<AVCaptureConnection> videoConnection(const AVCaptureOutput& output) {
  for (const auto& connection : output.connections())
    for (const AVCaptureInputPort& port : connection->inputPorts())
      if (port.mediaType == AVMediaType::Video) return connection;
  return nullptr;
}

} // namespace

ZVKYCCameraViewController::ZVKYCCameraViewController()
    : ZVScreen(name), merchant(ZVKYCHelper::instance().merchant),
      captureSession_(make<AVCaptureSession>()) {}

ZVKYCCameraViewController::~ZVKYCCameraViewController() = default;

std::weak_ptr<ZVKYCCameraViewController> ZVKYCCameraViewController::weakSelf() {
  return std::static_pointer_cast<ZVKYCCameraViewController>(shared_from_this());
}

std::optional<ZVDocument> ZVKYCCameraViewController::document() const {
  return merchant->document(isRequired, index);
}

bool ZVKYCCameraViewController::hasBackSide() const {
  const auto kind = document();
  return kind && scanBackSide(*kind);
}

void ZVKYCCameraViewController::declareNib(NibDeclaration& nib) {
  nib.outlet("cameraView", cameraView);
  nib.outlet("backgroundImageView", backgroundImageView);
  nib.outlet("cardView", cardView);
  nib.outlet("cardImageView", cardImageView);
  nib.outlet("cardTitleLabel", cardTitleLabel);
  nib.outlet("cardLabel1", cardLabel1);
  nib.outlet("cardLabel2", cardLabel2);
  nib.outlet("errorView", errorView);
  nib.outlet("errorImageView", errorImageView);
  nib.outlet("errorTitleLabel", errorTitleLabel);
  nib.outlet("errorMessageLabel", errorMessageLabel);
  nib.outlet("snapshotEffectView", snapshotEffectView);
  nib.outlet("indicator", indicator);
  nib.outlet("cameraNotice", cameraNotice);
  nib.outlet("cameraNoticeLabel", cameraNoticeLabel);
}

// Lifecycle

void ZVKYCCameraViewController::viewDidLoad() {
  ZVScreen::viewDidLoad();
  cameraKeeper_ = std::make_unique<CameraKeeper>(
      captureSession_, AVCaptureDevicePosition::Back, cameraNotice, cameraNoticeLabel,
      CameraKeeper::Screen{[this] { makeCamera(); }, [] {}});
  DispatchQueue::main().async([self = weakSelf()] {
    if (const auto screen = self.lock()) screen->makeCamera();
  });
  configure();
}

void ZVKYCCameraViewController::viewWillAppear(bool animated) {
  ZVScreen::viewWillAppear(animated);
  ZVRootViewController& shell = ZVScreen::shell();
  shell.desc = localized("documentDescription");
  shell.titleText = documentTitle(document());
  shell.bottomButtonTitle = localized(isErrorShown ? "retakePhoto" : "takePhoto");
  if (ZVKYCHelper::instance().identity()) {
    shell.currentPage = 0;
    shell.showBackButton = false;
  } else {
    shell.currentPage = type == ZVKYCCameraType::ineFront ? 2 : 3;
    shell.showBackButton = true;
  }
  setBottomButtonAction([this] { bottomButtonAction(); });
  captureSession_->startRunning();
  cameraKeeper_->resume();
}

void ZVKYCCameraViewController::viewWillDisappear(bool animated) {
  ZVScreen::viewWillDisappear(animated);
  cameraKeeper_->pause();
  captureSession_->stopRunning();
}

void ZVKYCCameraViewController::viewDidLayoutSubviews() {
  ZVScreen::viewDidLayoutSubviews();
  const auto camera = cameraView.lock();
  if (previewLayer_ && camera) previewLayer_->setFrame(camera->bounds());
}

std::string ZVKYCCameraViewController::announcement() const {
  const auto text = [](const std::weak_ptr<UILabel>& outlet) {
    const auto label = outlet.lock();
    return label ? label->text().value_or("") : "";
  };
  if (isErrorShown) return text(errorTitleLabel) + ". " + text(errorMessageLabel);
  if (!hasBackSide()) return ZVScreen::announcement();
  return localized(type == ZVKYCCameraType::ineFront ? "frontSide" : "backSide") + ". " +
         ZVScreen::announcement();
}

// Permission and contents

void ZVKYCCameraViewController::configure() {
  askForCamera([self = weakSelf()](bool granted) {
    if (const auto screen = self.lock()) screen->refreshSubviews(granted);
  });
}

void ZVKYCCameraViewController::refreshSubviews(bool isVideoPermissionGranted) {
  cameraPermissionAccess_ = isVideoPermissionGranted;
  const bool front = type == ZVKYCCameraType::ineFront;
  if (const auto card = cardView.lock()) card->setHidden(false);
  if (const auto image = backgroundImageView.lock())
    image->setImage(zvKYCImage("ZVCameraCardIcon"));
  if (const auto label = errorTitleLabel.lock()) label->setText(localized("faceErrorTitle"));
  if (const auto label = cardTitleLabel.lock())
    label->setText(!hasBackSide() ? " " : localized(front ? "frontSide" : "backSide"));
  if (const auto label = cardLabel1.lock()) label->setText(localized("documentWarning1"));
  if (const auto label = cardLabel2.lock()) label->setText(localized("documentWarning2"));
  if (const auto image = cardImageView.lock())
    image->setImage(zvKYCImage(front ? "ZVFrontIneCard" : "ZVBackIneCard"));
  DispatchQueue::main().asyncAfter(outlineShows, [outline = cardImageView] {
    UIView::animate(outlineFades, [&] {
      if (const auto image = outline.lock()) image->setAlpha(0);
    });
  });
}

// Camera

void ZVKYCCameraViewController::makeCamera() {
  if (captureSession_->input()) return; // the keeper has added one already
  previewLayer_ = addCamera(captureSession_, AVCaptureDevicePosition::Back);
  if (!previewLayer_) return;
  // The error panel may have opened before the camera was there.
  previewLayer_->setOpacity(isErrorShown ? 0 : 1);
  if (const auto camera = cameraView.lock()) {
    previewLayer_->setFrame(camera->bounds());
    camera->layer()->insertSublayer(previewLayer_, 0);
  }
  imageOutput_ = make<AVCaptureStillImageOutput>();
  imageOutput_->outputSettings = {{AVVideoCodecKey, AVVideoCodecJPEG}};
  captureSession_->addOutput(imageOutput_);
  // A screen that the person left before this turn must not keep the camera running.
  if (appearance() == Appearance::Appearing || appearance() == Appearance::Appeared)
    captureSession_->startRunning();
}

// Taking the picture

void ZVKYCCameraViewController::bottomButtonAction() {
  if (isErrorShown) return showError(false);
  if (!cameraPermissionAccess_) {
    const auto settings = URL::fromString(UIApplicationOpenSettingsURLString);
    // A sandbox or a bare desktop has no settings to open.
    if (settings && !UIApplication::shared().openURL(*settings))
      cameraKeeper_->say("cameraForbidden");
    return;
  }
  if (const auto flash = snapshotEffectView.lock()) {
    flash->setAlpha(1.0);
    UIView::animate(flashFades, [&] { flash->setAlpha(0); });
  }
  takePhoto([self = weakSelf()](const std::optional<Data>& data) {
    const auto screen = self.lock();
    if (screen && data) screen->startRequest(*data);
  });
}

void ZVKYCCameraViewController::takePhoto(std::function<void(std::optional<Data>)> completion) {
  const auto connection = imageOutput_ ? videoConnection(*imageOutput_) : nullptr;
  if (!connection) return;
  imageOutput_->captureStillImageAsynchronously(
      connection, [completion = std::move(completion)](const std::optional<CMSampleBuffer>& buffer,
                                                       const std::optional<Error>&) {
        auto bytes = AVCaptureStillImageOutput::jpegStillImageNSDataRepresentation(buffer);
        // The rest changes screens and must be on the main queue.
        DispatchQueue::main().async([completion, bytes = std::move(bytes)] { completion(bytes); });
      });
  trackPhoto();
}

void ZVKYCCameraViewController::startRequest(const Data& data) {
  // Two quick taps take two pictures; the first one that arrives is used.
  if (!objectId || appearance() == Appearance::Disappearing ||
      appearance() == Appearance::Disappeared)
    return;
  UIAccessibility::post(UIAccessibility::Notification::Announcement, localized("pictureTaken"));
  const DocumentStep step{isRequired, index, objectId};
  if (type == ZVKYCCameraType::ineFront && hasBackSide())
    show(backCamera(step, data));
  else if (type == ZVKYCCameraType::ineFront)
    show(documentUpload(step, data, std::nullopt));
  else if (frontIneImage)
    show(documentUpload(step, *frontIneImage, data));
}

// Error panel

void ZVKYCCameraViewController::showError(bool show) {
  if (const auto panel = errorView.lock()) panel->setAlpha(show ? 1 : 0);
  if (previewLayer_) previewLayer_->setOpacity(show ? 0 : 1);
  if (const auto card = cardView.lock()) card->setAlpha(show ? 0 : 1);
  if (const auto image = backgroundImageView.lock()) image->setAlpha(show ? 0 : 1);
  isErrorShown = show;
  shell().bottomButtonTitle = localized(show ? "retakePhoto" : "takePhoto");
}

} // namespace zuvi
