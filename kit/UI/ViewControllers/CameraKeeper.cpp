#include "kit/UI/ViewControllers/CameraKeeper.h"

#include "kit/Helper/ZVLocalization.h"
#include "kit/UI/ViewControllers/CameraSetup.h"
#include "platform/AVFoundation/AVCaptureDeviceInput.h"
#include "platform/AVFoundation/AVCaptureSession.h"
#include "platform/AVFoundation/AVError.h"

#include <utility>

namespace zuvi {

namespace {

// Seconds. Not every camera that comes back is announced, so the keeper also polls.
constexpr double lookInterval = 2;

bool isListed(const AVCaptureDevice& device) {
  for (const auto& one : AVCaptureDevice::devices())
    if (one->uniqueID() == device.uniqueID()) return true;
  return false;
}

} // namespace

CameraKeeper::CameraKeeper(std::shared_ptr<AVCaptureSession> session,
                           AVCaptureDevicePosition position, std::weak_ptr<UIView> notice,
                           std::weak_ptr<UILabel> label, Screen screen)
    : session_(std::move(session)), position_(position), notice_(std::move(notice)),
      label_(std::move(label)), screen_(std::move(screen)) {
  session_->observer = [this](AVCaptureSessionEvent event, const auto& error) {
    heard(event, error);
  };
  devices_ = NotificationCenter::defaultCenter().observe(AVCaptureDevicesDidChange,
                                                         [this](const Notification&) { look(); });
}

CameraKeeper::~CameraKeeper() {
  session_->observer = nullptr;
}

void CameraKeeper::resume() {
  onShow_ = true;
  if (session_->input()) look();
  if (loss_ && !session_->isRunning()) say(loss_);
  lookAgain();
}

void CameraKeeper::pause() {
  onShow_ = false;
  calls_.cancelAll();
}

void CameraKeeper::heard(AVCaptureSessionEvent event, const std::optional<Error>& error) {
  if (event == AVCaptureSessionEvent::Failed) return lose(error.value_or(Error{}));
  seen_ = true;
  if (std::exchange(loss_, nullptr) && onShow_)
    UIAccessibility::post(UIAccessibility::Notification::Announcement, localized("cameraBack"));
  hideNotice();
}

void CameraKeeper::lose(const Error& error) {
  screen_.cameraLost();
  const bool gave = std::exchange(seen_, false);
  if (session_->isRunning()) return;
  // The screen that asks for the camera reports a refused permission.
  if (error.code == AVErrorNotAuthorized) return lookAgain();
  lookAgain();
  if (loss_) return; // the first error counts, not those of later attempts
  const bool listed = session_->input() && isListed(*session_->input()->device());
  loss_ = gave || !listed ? "cameraGone" : "cameraFails";
  if (onShow_) say(loss_);
}

/// Starts a camera that is there and not in use.
void CameraKeeper::look() {
  const auto status = AVCaptureDevice::authorizationStatus();
  if (!onShow_ || session_->isRunning() || status == AVAuthorizationStatus::Denied ||
      status == AVAuthorizationStatus::Restricted)
    return;
  if (!session_->input()) return screen_.makeCamera();
  screen_.cameraLost(); // the session's event may still be under way
  reconnect();
}

void CameraKeeper::lookAgain() {
  calls_.cancelAll();
  if (!onShow_) return;
  calls_.perform("look", lookInterval, [this] {
    look();
    const bool missing =
        !session_->input() && AVCaptureDevice::areDevicesKnown() &&
        AVCaptureDevice::authorizationStatus() == AVAuthorizationStatus::Authorized;
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
