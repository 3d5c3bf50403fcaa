#pragma once

namespace zuvi {

/// The domain of the camera's errors. Codes:
inline constexpr const char* AVFoundationErrorDomain = "AVFoundationErrorDomain";
enum AVErrorCode : int {
  AVErrorUnknown = -11800,
  AVErrorSessionNotRunning = -11803,     ///< nothing can be taken: the session does not run
  AVErrorNoDataCaptured = -11805,        ///< the film, or the still in time, got no picture
  AVErrorDiskFull = -11807,              ///< the film could not be written
  AVErrorDeviceWasDisconnected = -11808, ///< the camera failed or went away
  AVErrorInvalidSetting = -11815,        ///< a setting or source that cannot be used
  AVErrorOperationInterrupted = -11847,  ///< given up before its end
  AVErrorNotAuthorized = -11852,         ///< the user refuses the camera
};

} // namespace zuvi
