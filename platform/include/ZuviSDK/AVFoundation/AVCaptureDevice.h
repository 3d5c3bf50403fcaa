#pragma once

#include <ZuviSDK/Export.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zuvi {

class CameraProvider;

/// Whether this program may use the camera.
enum class AVAuthorizationStatus { NotDetermined = 0, Restricted = 1, Denied = 2, Authorized = 3 };

/// Which way a camera looks, seen from the screen.
enum class AVCaptureDevicePosition { Unspecified = 0, Back = 1, Front = 2 };

/// What is known of a camera before it is opened.
struct CameraDescription {
  std::string uniqueID;      ///< by which the provider opens it
  std::string localizedName; ///< for people
  /// Unspecified where the device does not say.
  AVCaptureDevicePosition position = AVCaptureDevicePosition::Unspecified;
  bool simulated = false; ///< a drawing or a file that stands for a camera
};

/// Posted on the main queue, without contents, when cameras have come or gone, and when those that
/// are there are known for the first time.
inline constexpr const char* AVCaptureDevicesDidChange = "AVCaptureDevicesDidChange";

/// A camera of this machine. Any thread.
class AVCaptureDevice {
public:
  /// Asks nobody; the answer may change while the program runs.
  static AVAuthorizationStatus authorizationStatus();
  /// Asks for the camera, with a dialogue where the system has one. The answer comes once, on a
  /// platform queue; at once when it is known already.
  static void requestAccess(std::function<void(bool granted)> handler);
  /// Begins to look for cameras, so that they are known when one is wanted. Does not wait.
  static void discover();
  /// The video cameras that are known to be there now; does not wait for any that may be there. One
  /// that serves both sides is listed for each. `AVCaptureDevicesDidChange` tells of changes.
  ZUVI_API static std::vector<std::shared_ptr<AVCaptureDevice>> devices();

  /// Whether the cameras that were there at the beginning are known by now; finding out takes a
  /// moment, or long on a machine whose drivers or services are slow.
  static bool areDevicesKnown();

  /// Where cameras come from; null: the machine's own (`SystemCameraProvider`), which is also what
  /// holds at start. Devices, inputs and sessions made before keep the provider that they had.
  ZUVI_API static void setProvider(std::shared_ptr<CameraProvider> provider);
  /// Never null.
  static std::shared_ptr<CameraProvider> provider();

  /// For providers and tests; hosts take a camera from `devices`.
  AVCaptureDevice(std::shared_ptr<CameraProvider> provider, CameraDescription description);

  /// As the provider described the camera when it was listed.
  /// @{
  AVCaptureDevicePosition position() const { return description_.position; }
  const std::string& uniqueID() const { return description_.uniqueID; }
  const std::string& localizedName() const { return description_.localizedName; }
  /// @}
  /// Whether a drawing or a file stands for this camera.
  bool isSimulated() const { return description_.simulated; }

  /// The provider that the camera comes from.
  const std::shared_ptr<CameraProvider>& source() const { return provider_; }

private:
  std::shared_ptr<CameraProvider> provider_;
  CameraDescription description_;
};

} // namespace zuvi
