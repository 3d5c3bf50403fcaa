#pragma once

#include "platform/AVFoundation/CameraProvider.h"

#include <map>
#include <mutex>

namespace zuvi {

/// The machine's own cameras. In a sandbox the camera portal asks for the permission and hands them
/// over; elsewhere the permission is that to open a camera's device file.
class SystemCameraProvider final : public CameraProvider {
public:
  /// `positions` tells by device file or unique id which way a camera looks whose driver does not
  /// say so.
  explicit SystemCameraProvider(std::map<std::string, AVCaptureDevicePosition> positions = {});

  AVAuthorizationStatus authorizationStatus() override;
  void requestAccess(std::function<void(bool granted)> answer) override;
  std::vector<CameraDescription> devices() override;
  std::shared_ptr<CameraStream> open(const std::string& uniqueID) override;

private:
  std::map<std::string, AVCaptureDevicePosition> positions_;
};

} // namespace zuvi
