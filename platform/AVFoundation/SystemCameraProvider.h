#pragma once

#include "platform/AVFoundation/CameraProvider.h"

#include <map>
#include <mutex>

namespace zuvi {

/// The machine's own cameras. In a sandbox the camera portal asks for the permission and hands them
/// over as one; elsewhere the permission is that to open a camera's device file.
class SystemCameraProvider final : public CameraProvider,
                                   public std::enable_shared_from_this<SystemCameraProvider> {
public:
  enum class Access { Devices, Portal };

  /// `positions` tells by device file or unique id which way a camera looks whose driver does not
  /// say so; the portal's camera is called "portal".
  explicit SystemCameraProvider(std::map<std::string, AVCaptureDevicePosition> positions = {});
  SystemCameraProvider(std::map<std::string, AVCaptureDevicePosition> positions, Access access);

  AVAuthorizationStatus authorizationStatus() override;
  void requestAccess(std::function<void(bool granted)> answer) override;
  std::vector<CameraDescription> devices() override;
  std::shared_ptr<CameraStream> open(const std::string& uniqueID) override;

private:
  AVCaptureDevicePosition hostPosition(const std::string& id) const;

  const std::map<std::string, AVCaptureDevicePosition> positions_;
  const Access access_;
  std::mutex mutex_;
  AVAuthorizationStatus portalAnswer_ = AVAuthorizationStatus::NotDetermined;
};

} // namespace zuvi
