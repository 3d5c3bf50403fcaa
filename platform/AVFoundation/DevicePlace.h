#pragma once

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>

#include <optional>
#include <string>

namespace zuvi {

/// Where a camera sits, as the kernel knows it.
struct DevicePlace {
  AVCaptureDevicePosition position = AVCaptureDevicePosition::Unspecified;
  std::optional<bool> builtIn; ///< fixed to the machine; absent: the kernel does not know
};

/// The place of the camera of that device file: by the panel that the firmware names, else by the
/// driver's orientation control. May open the device; waits for its driver.
DevicePlace placeOf(const std::string& device, const std::string& sysfs = "/sys");

} // namespace zuvi
