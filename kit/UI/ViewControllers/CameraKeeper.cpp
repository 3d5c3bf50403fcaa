#include "kit/UI/ViewControllers/CameraKeeper.h"

#include "kit/Helper/ZVLocalization.h"
#include "kit/UI/ViewControllers/CameraSetup.h"
#include "platform/AVFoundation/AVCaptureDeviceInput.h"
#include "platform/AVFoundation/AVCaptureSession.h"

#include <utility>

namespace zuvi {

namespace {

// Seconds. Not every camera that is back is announced, so it is looked for as well.
constexpr double lookInterval = 2;

} // namespace

CameraKeeper::CameraKeeper(std::shared_ptr<AVCaptureSession> session,
                           AVCaptureDevicePosition position, std::weak_ptr<UIView> notice,
                           std::weak_ptr<UILabel> label, Screen screen)
    : session_(std::move(session)), position_(position), notice_(std::move(notice)),
      label_(std::move(label)), screen_(std::move(screen)) {
  session_->observer = [this](AVCaptureSessionEvent event) { heard(event); };
  devices_ = NotificationCenter::defaultCenter().observe(AVCaptureDevicesDidChange,
                                                         [this](const Notification&) { look(); });
}

CameraKeeper::~CameraKeeper() {
  session_->observer = nullptr;
}

void CameraKeeper::resume() {
  onShow_ = true;
  lookAgain();
}

void CameraKeeper::pause() {
  onShow_ = false;
  calls_.cancelAll();
}

void CameraKeeper::heard(AVCaptureSessionEvent event) {
  if (event == AVCaptureSessionEvent::FirstPicture) {
    if (std::exchange(lost_, false))
      UIAccessibility::post(UIAccessibility::Notification::Announcement, spoken("cameraBack"));
    return hideNotice();
  }
  if (session_->isRunning()) return; // it was started again meanwhile
  if (!std::exchange(lost_, true)) {
    screen_.cameraLost();
    say("cameraGone");
  }
  lookAgain();
}

/// Takes up a camera that is there and not in use.
void CameraKeeper::look() {
  if (!onShow_ || session_->isRunning()) return;
  if (session_->input())
    reconnect();
  else
    screen_.makeCamera();
}

void CameraKeeper::lookAgain() {
  calls_.cancelAll();
  if (!onShow_) return;
  calls_.perform("look", lookInterval, [this] {
    look();
    // Who may not use the camera is told so where it is asked for.
    const bool missing = !session_->input() && AVCaptureDevice::authorizationStatus() ==
                                                   AVAuthorizationStatus::Authorized;
    const auto notice = notice_.lock();
    if (missing && notice && notice->isHidden()) say("cameraMissing");
    if (!session_->isRunning()) lookAgain();
  });
}

void CameraKeeper::reconnect() {
  const auto device = cameraAt(position_);
  if (!device) return;
  if (device->uniqueID() != session_->input()->device()->uniqueID()) {
    const auto input = AVCaptureDeviceInput::withDevice(device);
    if (!input) return;
    session_->removeInput();
    session_->addInput(input);
  }
  session_->startRunning();
}

void CameraKeeper::say(const char* key) {
  const std::string text = localized(key);
  if (const auto label = label_.lock()) label->setText(text);
  if (const auto notice = notice_.lock()) notice->setHidden(false);
  UIAccessibility::post(UIAccessibility::Notification::Announcement, text);
}

void CameraKeeper::hideNotice() {
  if (const auto notice = notice_.lock()) notice->setHidden(true);
}

} // namespace zuvi
