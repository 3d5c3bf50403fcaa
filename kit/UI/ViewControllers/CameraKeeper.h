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

/// Keeps the camera of a screen running while the screen is visible: reports when it is missing or
/// lost, and starts it again when it is back. Main queue only.
class CameraKeeper {
public:
  /// The screen's callbacks.
  struct Screen {
    std::function<void()> makeCamera; ///< a camera that was missing may be there now
    std::function<void()> cameraLost; ///< the running camera was lost
  };

  /// `notice` shows `label` over the preview; it is hidden while the camera works.
  CameraKeeper(std::shared_ptr<AVCaptureSession> session, AVCaptureDevicePosition position,
               std::weak_ptr<UIView> notice, std::weak_ptr<UILabel> label, Screen screen);
  ~CameraKeeper();
  CameraKeeper(const CameraKeeper&) = delete;
  CameraKeeper& operator=(const CameraKeeper&) = delete;

  /// Call them when the screen appears and disappears.
  /// @{
  void resume();
  void pause();
  /// @}
  /// Shows the text of that key, and announces it to screen readers.
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
  /// The key of the text about a camera that was lost since the last picture; null: not lost.
  const char* loss_ = nullptr;
  NotificationObserver devices_;
  DelayedCalls calls_;
};

} // namespace zuvi
