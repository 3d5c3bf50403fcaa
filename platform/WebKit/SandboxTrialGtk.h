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

/// While it lives, an engine that is made does without its sandbox: it looks into the environment
/// for that, and only then. Nothing of it is left afterwards to the host, its own web views or the
/// programs that it starts. Main thread.
class WithoutSandbox {
public:
  WithoutSandbox();
  ~WithoutSandbox();
  WithoutSandbox(const WithoutSandbox&) = delete;
  WithoutSandbox& operator=(const WithoutSandbox&) = delete;

private:
  char** theirs_;
  char** ours_;
};

} // namespace zuvi
