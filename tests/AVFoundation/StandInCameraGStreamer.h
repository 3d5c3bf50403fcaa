#pragma once

#include "platform/AVFoundation/CameraProvider.h"

#include <memory>
#include <string>

namespace zuvi {

/// What a camera of the kernel would do, without one: an element that offers forms of pictures and
/// gives those of the form that is chosen, one colour on the left, another on the right, whatever
/// the form. What it offers from other memory than the ordinary it refuses to give.
struct StandInCamera {
  std::string offers; ///< as the text of caps
  int rotation = 0;   ///< degrees against the clock that straighten its pictures
  /// In the stream, such as "rotate-90"; none when empty.
  std::string orientationTag = {};
};

/// A provider with that camera alone, at the back.
class StandInProvider final : public CameraProvider {
public:
  explicit StandInProvider(StandInCamera camera,
                           AVCaptureDevicePosition position = AVCaptureDevicePosition::Back);

  AVAuthorizationStatus authorizationStatus() override { return AVAuthorizationStatus::Authorized; }
  void requestAccess(std::function<void(bool)> answer) override { answer(true); }
  std::vector<CameraDescription> devices() override {
    return {{"stand-in", "Stand-in", position_, true}};
  }
  std::shared_ptr<CameraStream> open(const std::string&) override;

  /// What the camera was asked for last, of its offers.
  std::string given() const;

private:
  const StandInCamera camera_;
  const AVCaptureDevicePosition position_;
  const std::string key_;
  static inline int made_ = 0;
};

} // namespace zuvi
