#pragma once

#include <functional>

namespace zuvi {

/// The desktop's service that asks the user for the camera and hands it to a sandboxed program.
class CameraPortal {
public:
  /// Whether this program runs in a sandbox, where the portal is the only way to a camera.
  static bool isSandboxed();

  /// Asks the user; the answer comes once, on a thread of its own, however long it takes. No when
  /// there is no portal or it goes away.
  static void requestAccess(std::function<void(bool granted)> answer);

  /// A file descriptor through which the granted cameras can be reached, the caller's to close; -1
  /// when there is none. Waits for the portal.
  static int openCameras();
};

} // namespace zuvi
