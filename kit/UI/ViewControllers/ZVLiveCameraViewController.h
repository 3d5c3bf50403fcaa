#pragma once

#include <ZuviSDK/Foundation/Data.h>
#include <ZuviSDK/Foundation/Error.h>
#include <ZuviSDK/UIKit/UIButton.h>
#include <ZuviSDK/UIKit/UIImageView.h>
#include "kit/UI/ViewControllers/ZVScreen.h"

#include <optional>
#include <string>

namespace zuvi {

class AVCaptureMovieFileOutput;
class AVCaptureSession;
class AVCaptureVideoPreviewLayer;
class CameraKeeper;
class Timer;

/// The recorder: records the selfie film after a count-down of five seconds, for seven seconds. The
/// number on the screen is the only counter; from zero on it is hidden and becomes negative.
class ZVLiveCameraViewController final : public ZVScreen {
public:
  static constexpr const char* name = "ZVLiveCameraViewController";
  ZVLiveCameraViewController();
  ~ZVLiveCameraViewController() override;

  std::weak_ptr<UILabel> startTimerLabel;
  std::weak_ptr<UILabel> recordLabel;
  std::weak_ptr<UIButton> recordButton;
  std::weak_ptr<UIImageView> gifImageView;
  std::weak_ptr<UIView> cameraNotice; ///< shows `cameraNoticeLabel` while there is no camera
  std::weak_ptr<UILabel> cameraNoticeLabel;

  void declareNib(NibDeclaration& nib) override;
  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;
  void viewWillDisappear(bool animated) override;
  void viewDidLayoutSubviews() override;
  UIView* preferredFocusView() override { return recordButton.lock().get(); }

private:
  std::string announcement() const override;
  class RecordingDelegate;

  void configure();
  void startTimer(bool isVideoPermissionGranted);
  void updateTimer();
  void beginRecording();
  void makeCamera();
  void recordButtonTap();
  void showIdle();
  void endTake();
  void giveUpTake();
  /// Called on the main queue; absent: there is no film.
  void filmDidEnd(const std::optional<Data>& film);
  std::weak_ptr<ZVLiveCameraViewController> weakSelf();

  std::shared_ptr<AVCaptureSession> captureSession_;
  std::shared_ptr<AVCaptureMovieFileOutput> videoOutput_;
  std::shared_ptr<AVCaptureVideoPreviewLayer> previewLayer_;
  std::unique_ptr<CameraKeeper> cameraKeeper_;
  std::shared_ptr<RecordingDelegate> recordingDelegate_;
  std::shared_ptr<Timer> timer_;
  bool takeUnderWay_ = false; ///< from the start of the count-down to the film's end
};

} // namespace zuvi
