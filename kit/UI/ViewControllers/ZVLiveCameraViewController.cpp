#include "kit/UI/ViewControllers/ZVLiveCameraViewController.h"

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Foundation/Timer.h>
#include <ZuviSDK/UIKit/NibDeclaration.h>
#include "kit/Helper/Palette.h"
#include "kit/Helper/UIImage+Gif.h"
#include "kit/Helper/ZVAnalyticsManager.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Helper/ZVMixpanelEvents.h"
#include "kit/UI/ViewControllers/CameraKeeper.h"
#include "kit/UI/ViewControllers/CameraSetup.h"
#include "kit/UI/ViewControllers/ZVLivenessVerifyViewController.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "platform/AVFoundation/AVCaptureMovieFileOutput.h"
#include "platform/AVFoundation/AVCaptureSession.h"
#include "platform/AVFoundation/AVCaptureVideoPreviewLayer.h"
#include "platform/Foundation/DateFormatter.h"
#include "platform/Foundation/FileManager.h"

#include <charconv>
#include <utility>

namespace zuvi {

namespace {

constexpr const char* countDownFrom = "5"; // seconds
constexpr int filmLength = 7;              // seconds

void announce(const std::string& text) {
  UIAccessibility::post(UIAccessibility::Notification::Announcement, text);
}

std::optional<int> decimal(const std::optional<std::string>& text) {
  int value = 0;
  if (!text || text->empty()) return std::nullopt;
  const char* end = text->data() + text->size();
  const auto [stop, failed] = std::from_chars(text->data(), end, value);
  return failed == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

} // namespace

/// Passes the end of a film from the platform's queue to the main queue. It holds the screen
/// weakly, so that the screen is never destroyed on another thread.
class ZVLiveCameraViewController::RecordingDelegate final
    : public AVCaptureFileOutputRecordingDelegate {
public:
  explicit RecordingDelegate(std::weak_ptr<ZVLiveCameraViewController> screen)
      : screen_(std::move(screen)) {}

  void fileOutputDidFinishRecording(const std::string& path, std::optional<Error>) override {
    const auto film = FileManager::contents(path);
    FileManager::removeItem(path); // from now on the bytes are the only copy
    DispatchQueue::main().async([screen = screen_, film] {
      if (const auto recorder = screen.lock()) recorder->filmDidEnd(film);
    });
  }

private:
  std::weak_ptr<ZVLiveCameraViewController> screen_;
};

ZVLiveCameraViewController::ZVLiveCameraViewController()
    : ZVScreen(name), captureSession_(make<AVCaptureSession>()) {}

ZVLiveCameraViewController::~ZVLiveCameraViewController() = default;

std::weak_ptr<ZVLiveCameraViewController> ZVLiveCameraViewController::weakSelf() {
  return std::static_pointer_cast<ZVLiveCameraViewController>(shared_from_this());
}

void ZVLiveCameraViewController::declareNib(NibDeclaration& nib) {
  nib.outlet("startTimerLabel", startTimerLabel);
  nib.outlet("recordLabel", recordLabel);
  nib.outlet("recordButton", recordButton);
  nib.outlet("gifImageView", gifImageView);
  nib.outlet("cameraNotice", cameraNotice);
  nib.outlet("cameraNoticeLabel", cameraNoticeLabel);
  nib.action("recordButtonTap", [this] { recordButtonTap(); });
}

// Lifecycle

void ZVLiveCameraViewController::viewDidLoad() {
  ZVScreen::viewDidLoad();
  if (const auto button = recordButton.lock()) {
    button->layer()->setBorderWidth(2.0);
    button->layer()->setBorderColor(paletteColor("light"));
  }
  if (const auto instruction = gifImageView.lock()) loadGif(instruction, "liveness");
  cameraKeeper_ = std::make_unique<CameraKeeper>(
      captureSession_, AVCaptureDevicePosition::Front, cameraNotice, cameraNoticeLabel,
      CameraKeeper::Screen{[this] { makeCamera(); }, [this] { giveUpTake(); }});
  DispatchQueue::main().async([self = weakSelf()] {
    if (const auto screen = self.lock()) screen->makeCamera();
  });
}

void ZVLiveCameraViewController::viewWillAppear(bool animated) {
  ZVScreen::viewWillAppear(animated);
  showIdle();
  takeUnderWay_ = false;
  cameraKeeper_->resume();

  ZVRootViewController& shell = ZVScreen::shell();
  shell.showBackButton = true;
  shell.titleText = localized("livenessCameraTitle");
  shell.desc = std::nullopt;
  shell.showLiveView = true;
}

void ZVLiveCameraViewController::viewWillDisappear(bool animated) {
  ZVScreen::viewWillDisappear(animated);
  cameraKeeper_->pause();
  endTake();
}

void ZVLiveCameraViewController::viewDidLayoutSubviews() {
  ZVScreen::viewDidLayoutSubviews();
  if (const auto button = recordButton.lock())
    button->layer()->setCornerRadius(button->frame().width / 2);
  if (previewLayer_) previewLayer_->setFrame(view()->bounds());
}

std::string ZVLiveCameraViewController::announcement() const {
  return ZVScreen::announcement() + " " + localized("instruction");
}

// Camera

void ZVLiveCameraViewController::makeCamera() {
  if (captureSession_->input()) return; // the keeper has added one already
  previewLayer_ = addCamera(captureSession_, AVCaptureDevicePosition::Front);
  if (!previewLayer_) return;
  previewLayer_->setFrame(view()->bounds());
  view()->layer()->insertSublayer(previewLayer_, 0);
  videoOutput_ = make<AVCaptureMovieFileOutput>();
  captureSession_->addOutput(videoOutput_);
  captureSession_->startRunning();
}

// The take

/// After this, nothing would stop a running film or use its result.
void ZVLiveCameraViewController::endTake() {
  if (timer_) timer_->invalidate();
  timer_ = nullptr;
  if (takeUnderWay_ && videoOutput_) videoOutput_->cancelRecording();
  takeUnderWay_ = false;
}

/// Half a film is useless; the person starts again when the camera is back.
void ZVLiveCameraViewController::giveUpTake() {
  if (!takeUnderWay_) return;
  endTake();
  showIdle();
}

/// Restores the state before the first tap.
void ZVLiveCameraViewController::showIdle() {
  if (const auto figure = startTimerLabel.lock()) {
    figure->setText(countDownFrom);
    figure->setAlpha(0);
  }
  if (const auto label = recordLabel.lock()) label->setText(localized("record"));
  if (const auto instruction = gifImageView.lock()) instruction->setAlpha(1.0);
}

void ZVLiveCameraViewController::recordButtonTap() {
  if (takeUnderWay_) return;        // one timer, one film
  if (timer_) timer_->invalidate(); // of a take without a film
  ZVAnalyticsManager::track(MixpanelEvent::livenessRecordClicked);
  if (const auto figure = startTimerLabel.lock()) {
    // An earlier take without a film has left it at zero or below.
    if (const auto left = decimal(figure->text()); left && *left <= 0) showIdle();
    figure->setAlpha(1.0);
  }
  if (const auto label = recordLabel.lock()) label->setText("00:0" + std::to_string(filmLength));
  configure();
}

void ZVLiveCameraViewController::configure() {
  askForCamera([self = weakSelf()](bool granted) {
    if (const auto screen = self.lock()) screen->startTimer(granted);
  });
}

void ZVLiveCameraViewController::startTimer(bool isVideoPermissionGranted) {
  // The answer may come after the person left the screen, or twice after two taps.
  if (!isVideoPermissionGranted || takeUnderWay_ || appearance() == Appearance::Disappearing ||
      appearance() == Appearance::Disappeared)
    return;
  takeUnderWay_ = true;
  if (const auto figure = startTimerLabel.lock()) announce(figure->text().value_or(""));
  timer_ = Timer::scheduled(1.0, Timer::Repeats::Yes, [this] { updateTimer(); });
}

void ZVLiveCameraViewController::updateTimer() {
  const auto figure = startTimerLabel.lock();
  const auto counter = figure ? decimal(figure->text()) : std::nullopt;
  if (!counter) return;
  const int value = *counter - 1;
  figure->setText(std::to_string(value));
  if (value > 0) announce(std::to_string(value));
  if (value == 0) beginRecording();
  if (value < 0 && value >= -filmLength) {
    if (const auto label = recordLabel.lock())
      label->setText("00:0" + std::to_string(value + filmLength));
    if (value == -filmLength) {
      // Without a camera, or with one that came too late for this take, the delegate gets no end;
      // the next tap starts again.
      if (videoOutput_ && videoOutput_->isRecording())
        videoOutput_->stopRecording();
      else
        takeUnderWay_ = false;
    }
  }
}

void ZVLiveCameraViewController::beginRecording() {
  if (const auto figure = startTimerLabel.lock()) figure->setAlpha(0);
  announce(localized("recordingBegins"));
  DateFormatter formatter;
  formatter.dateFormat = "yyyy-MM-dd'T'HH:mm:ssZ";
  const auto folder = FileManager::documentsDirectory();
  // Without a folder the film fails at once, as on a full disk.
  const std::string path =
      folder ? *folder + "/" + formatter.string(Date::now()) + ".mov" : std::string();
  if (videoOutput_) {
    if (!recordingDelegate_) recordingDelegate_ = std::make_shared<RecordingDelegate>(weakSelf());
    videoOutput_->startRecording(path, recordingDelegate_);
  }
  if (const auto instruction = gifImageView.lock()) instruction->setAlpha(0);
}

void ZVLiveCameraViewController::filmDidEnd(const std::optional<Data>& film) {
  if (!std::exchange(takeUnderWay_, false)) return; // the person has left the screen
  const auto review = make<ZVLivenessVerifyViewController>();
  if (!film) { // the disk is full, or the camera is gone; the count-down may still run
    if (timer_) timer_->invalidate();
    timer_ = nullptr;
    announce(localized("recordingFailed"));
    return showIdle();
  }
  review->video = film;
  show(review);
}

} // namespace zuvi
