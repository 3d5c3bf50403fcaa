#pragma once

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>

#include <string>

namespace zuvi {

/// Whether this user may open the cameras of a device folder such as "/dev": denied when there are
/// some and not one can be read and written. A camera without a driver gives the same error on
/// opening as a forbidden one, so the file is asked.
AVAuthorizationStatus deviceAuthorization(const std::string& folder);

/// Whether this device file can be opened.
bool mayOpenDevice(const std::string& path);

} // namespace zuvi
