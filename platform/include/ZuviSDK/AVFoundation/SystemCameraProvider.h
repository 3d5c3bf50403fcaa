#pragma once

#include <ZuviSDK/AVFoundation/CameraProvider.h>
#include <ZuviSDK/Export.h>

#include <map>

namespace zuvi {

class DeviceWatch;

/// The machine's own cameras, which is what holds without `AVCaptureDevice::setProvider`. In a
/// sandbox the camera portal asks for the permission and hands them over; elsewhere the permission
/// is that to open a camera's device file.
class ZUVI_API SystemCameraProvider final
    : public CameraProvider,
      public std::enable_shared_from_this<SystemCameraProvider> {
public:
  /// How the cameras are reached.
  enum class Access { Devices, Portal };

  /// `positions` tells by device file, unique id or name which way a camera looks whose device does
  /// not say so. A side that is left without a camera is served as a person would expect: by the
  /// only camera there is; of several, by a built-in one for the person and another for documents.
  explicit SystemCameraProvider(std::map<std::string, AVCaptureDevicePosition> positions = {});
  /// For tests; the other constructor finds out by itself.
  ZUVI_HIDDEN SystemCameraProvider(std::map<std::string, AVCaptureDevicePosition> positions,
                                   Access access);
  ~SystemCameraProvider() override;

  ZUVI_HIDDEN AVAuthorizationStatus authorizationStatus() override;
  ZUVI_HIDDEN void requestAccess(std::function<void(bool granted)> answer) override;
  ZUVI_HIDDEN std::vector<CameraDescription> devices() override;
  ZUVI_HIDDEN bool areDevicesKnown() override;
  ZUVI_HIDDEN std::shared_ptr<CameraStream> open(const std::string& uniqueID) override;

private:
  ZUVI_HIDDEN DeviceWatch* watch();
  ZUVI_HIDDEN std::vector<CameraDescription> listed(const DeviceWatch& watch) const;
  ZUVI_HIDDEN void answered(bool granted);

  const std::map<std::string, AVCaptureDevicePosition> positions_;
  const Access access_;
  struct ZUVI_HIDDEN Request;
  const std::unique_ptr<Request> request_; // for the portal's permission
};

} // namespace zuvi
