#pragma once

#include <ZuviSDK/AVFoundation/CameraProvider.h>
#include <ZuviSDK/Export.h>

#include <optional>

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

/// Reads "none", "simulated" or the path of a device, picture or film. Absent if it is none of
/// them; `problem` then says in one line what is wrong.
ZUVI_API std::optional<CameraSourceDescription> parseCameraSource(const std::string& text,
                                                                  std::string& problem);

/// How the permission to use the camera behaves. `Grant` and `Refuse` are not determined until the
/// first request, which gives that answer.
enum class CameraPermission { Authorized, Denied, Restricted, Grant, Refuse };

/// What a host's own code decides about its cameras.
struct HostCameras {
  /// One device may be both.
  /// @{
  CameraSourceDescription front, back;
  /// @}
  CameraPermission permission = CameraPermission::Authorized; ///< what the kit is told
};

/// Cameras that the host's own code puts in the place of the machine's.
class ZUVI_API HostCameraProvider final : public CameraProvider {
public:
  /// Opens nothing yet: a path that leads nowhere shows when its camera is used.
  explicit HostCameraProvider(HostCameras cameras);

  ZUVI_HIDDEN AVAuthorizationStatus authorizationStatus() override;
  ZUVI_HIDDEN void requestAccess(std::function<void(bool granted)> answer) override;
  ZUVI_HIDDEN std::vector<CameraDescription> devices() override;
  ZUVI_HIDDEN std::shared_ptr<CameraStream> open(const std::string& uniqueID) override;

private:
  struct ZUVI_HIDDEN State;
  std::shared_ptr<State> state_; // also for cameras that are opened later
};

} // namespace zuvi
