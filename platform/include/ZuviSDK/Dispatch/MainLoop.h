#pragma once

#include <ZuviSDK/Export.h>

namespace zuvi {

/// Drives the main queue from the process's default event loop, beside the window system.
class ZUVI_API MainLoop {
public:
  /// Attaches the main queue to the event loop of the calling thread, which is the main thread
  /// from then on. Safe to call again. A host that runs its own GLib loop calls only this.
  static void attach();
  /// Attaches, then runs until `stop`.
  static void run();
  /// Makes `run` return; from the main thread.
  static void stop();
};

} // namespace zuvi
