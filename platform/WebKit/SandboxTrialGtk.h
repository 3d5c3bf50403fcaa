#pragma once

#include <gio/gio.h>

namespace zuvi {

/// The engine ends the program when it can't make the sandbox of its processes, as in a container
/// that may not. So what the sandbox needs is tried first, in a process of its own. Any thread.
class SandboxTrial {
public:
  SandboxTrial();
  ~SandboxTrial();
  SandboxTrial(const SandboxTrial&) = delete;
  SandboxTrial& operator=(const SandboxTrial&) = delete;
  /// Waits for the outcome.
  bool succeeds();

private:
  GSubprocess* process_;
};

} // namespace zuvi
