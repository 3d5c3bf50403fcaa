#pragma once

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>

#include <optional>
#include <string>
#include <vector>

namespace zuvi {

/// What is known of a camera before it is decided which side it serves.
struct CameraCandidate {
  std::string uniqueID, localizedName;
  /// As the device or the host says; unspecified when neither does.
  AVCaptureDevicePosition position = AVCaptureDevicePosition::Unspecified;
  std::optional<bool> builtIn; ///< fixed to the machine; absent: unknown
  bool colour = true;          ///< false: it sees shades of grey only, as an infrared camera does
};

/// The cameras with the sides that they serve, the one to take of each side first.
///
/// A side that no camera claims is served as a person would expect: of several cameras without a
/// position a built-in one faces the person and another one is for documents. A camera that is
/// alone serves both sides and is listed twice, as is one that claims the other side where there
/// is nothing else. A grey camera serves only where there is no other.
std::vector<CameraDescription> assignSides(const std::vector<CameraCandidate>& cameras);

} // namespace zuvi
