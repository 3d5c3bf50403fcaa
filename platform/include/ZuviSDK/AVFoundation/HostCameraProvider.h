#pragma once

#include <ZuviSDK/AVFoundation/CameraProvider.h>
#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/Error.h>

#include <mutex>
#include <optional>
#include <variant>

namespace zuvi {

/// What a host puts in the place of a camera.
struct CameraSourceDescription {
  /// What stands there.
  enum class Kind {
    None,      ///< no camera on this side
    Simulated, ///< a drawn moving scene
    Device,    ///< a camera's device file
    Picture,   ///< a JPEG or PNG file, shown still
    Film,      ///< a film file, shown over and over
  };
  Kind kind = Kind::None; ///< decides what `path` means
  std::string path;       ///< of a device, picture or film
};

/// Reads "none", "simulated" or the path of a device, picture or film; or says in one line what is
/// wrong with it.
ZUVI_API std::variant<CameraSourceDescription, Error> parseCameraSource(const std::string& text);

/// How the permission to use the camera behaves. `Grant` and `Refuse` are not determined until the
/// first request, which gives that answer.
enum class CameraPermission { Authorized, Denied, Restricted, Grant, Refuse };

/// Reads "authorized", "denied", "restricted", "grant" or "refuse".
std::variant<CameraPermission, Error> parseCameraPermission(const std::string& text);

/// What a host's own code decides about its cameras.
struct HostCameras {
  /// One device may be both.
  /// @{
  CameraSourceDescription front, back;
  /// @}
  CameraPermission permission = CameraPermission::Authorized; ///< what the kit is told
};

/// Cameras that the host's own code puts in the place of the machine's.
class ZUVI_API HostCameraProvider final : public CameraProvider,
                                          public std::enable_shared_from_this<HostCameraProvider> {
public:
  /// Opens nothing yet: a path that leads nowhere shows when its camera is used.
  explicit HostCameraProvider(HostCameras cameras);

  ZUVI_HIDDEN AVAuthorizationStatus authorizationStatus() override;
  ZUVI_HIDDEN void requestAccess(std::function<void(bool granted)> answer) override;
  ZUVI_HIDDEN std::vector<CameraDescription> devices() override;
  ZUVI_HIDDEN std::shared_ptr<CameraStream> open(const std::string& uniqueID) override;

private:
  HostCameras cameras_;
  std::mutex mutex_;
  AVAuthorizationStatus status_;
};

} // namespace zuvi
