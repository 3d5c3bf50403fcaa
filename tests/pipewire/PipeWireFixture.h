#pragma once

#include <ZuviSDK/AVFoundation/SystemCameraProvider.h>
#include "platform/ImageIO/ImageFile.h"
#include "testing/AVFoundation/CameraFixture.h"
#include "testing/UIKit/Pixels.h"
#include "testing/mediaserver/MediaServer.h"

namespace zuvi {

/// The machine's cameras as a host without a provider of its own gets them.
class PipeWireTest : public CameraTest {
protected:
  using Position = AVCaptureDevicePosition;
  using Access = SystemCameraProvider::Access;

  explicit PipeWireTest(Access access = Access::Devices) {
    AVCaptureDevice::setProvider(
        make<SystemCameraProvider>(std::map<std::string, Position>{}, access));
    AVCaptureDevice::discover();
  }
  /// Whether that camera comes to serve that side.
  bool serves(Position side, const std::string& name) {
    return time.waitUntil([&] {
      const auto found = device(side);
      return found && found->uniqueID() == name;
    });
  }
  /// Which of red, green and blue the middle of the next still is; else why there is none.
  std::string colourOf(const Rig& rig) {
    const auto still = take(rig);
    if (!still->jpeg) return still->error ? still->error->description : "not answered";
    const auto image = decodeImage(*still->jpeg);
    if (!image) return "no picture";
    const auto [red, green, blue, alpha] =
        test::Pixels(image).pixel(image->width() / 2, image->height() / 2);
    if (red > green && red > blue) return "red";
    return green > blue ? "green" : "blue";
  }
  /// A running session on the camera of that side.
  std::unique_ptr<Rig> start(Position side) {
    auto rig = std::make_unique<Rig>(device(side));
    rig->session->observer = [this](AVCaptureSessionEvent event, const std::optional<Error>&) {
      (event == AVCaptureSessionEvent::Failed ? failures : firstPictures)++;
    };
    rig->session->startRunning();
    return rig;
  }

  int failures = 0, firstPictures = 0;
};

} // namespace zuvi
