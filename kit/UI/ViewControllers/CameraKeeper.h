#pragma once

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include <ZuviSDK/Dispatch/DelayedCalls.h>
#include <ZuviSDK/Foundation/Error.h>
#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/UIKit/UILabel.h>

#include <functional>
#include <memory>

namespace zuvi {

class AVCaptureSession;
enum class AVCaptureSessionEvent;

/// Keeps the camera of a screen at work while the screen is on show: says when it is missing or has
/// gone, and takes it up again when it is back. Main queue only.
class CameraKeeper {
public:
  /// What the screen does about it.
  struct Screen {
    std::function<void()> makeCamera; ///< a camera may be there that was missing so far
    std::function<void()> cameraLost; ///< the camera has gone while it ran
  };

  /// `notice` shows `label` over the preview; it is hidden while all is well.
  CameraKeeper(std::shared_ptr<AVCaptureSession> session, AVCaptureDevicePosition position,
               std::weak_ptr<UIView> notice, std::weak_ptr<UILabel> label, Screen screen);
  ~CameraKeeper();
  CameraKeeper(const CameraKeeper&) = delete;
  CameraKeeper& operator=(const CameraKeeper&) = delete;

  /// To be called when the screen appears and disappears.
  /// @{
  void resume();
  void pause();
  /// @}
  /// Shows the text of that key, and has it spoken.
  void say(const char* key);

private:
  void heard(AVCaptureSessionEvent event, const std::optional<Error>& error);
  void lose(const Error& error);
  void look();
  void lookAgain();
  void reconnect();
  void hideNotice();

  const std::shared_ptr<AVCaptureSession> session_;
  const AVCaptureDevicePosition position_;
  const std::weak_ptr<UIView> notice_;
  const std::weak_ptr<UILabel> label_;
  const Screen screen_;
  bool onShow_ = false;
  bool seen_ = false; ///< the camera has given a picture since it was started
  /// What is to be said of a camera that was lost since the last picture; null for none.
  const char* loss_ = nullptr;
  NotificationObserver devices_;
  DelayedCalls calls_;
};

} // namespace zuvi
