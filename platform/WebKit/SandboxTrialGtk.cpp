#include "platform/WebKit/SandboxTrialGtk.h"

#include <vector>

namespace zuvi {

SandboxTrial::SandboxTrial() {
  std::vector<const char*> command{"timeout", "5"}; // seconds; a sandbox that takes longer is none
  command.insert(command.end(), {"bwrap", "--unshare-pid", "--unshare-net", "--unshare-uts"});
  command.insert(command.end(), {"--ro-bind", "/", "/", "--proc", "/proc", "--dev", "/dev"});
  for (const char* folder : {"/sys/block", "/sys/bus", "/sys/class", "/sys/dev", "/sys/devices"})
    command.insert(command.end(), {"--ro-bind", folder, folder});
  command.insert(command.end(), {"true", nullptr});
  const auto flags =
      GSubprocessFlags(G_SUBPROCESS_FLAGS_STDOUT_SILENCE | G_SUBPROCESS_FLAGS_STDERR_SILENCE);
  process_ = g_subprocess_newv(command.data(), flags, nullptr);
}

SandboxTrial::~SandboxTrial() {
  g_clear_object(&process_);
}

bool SandboxTrial::succeeds() {
  return process_ && g_subprocess_wait_check(process_, nullptr, nullptr);
}

void forgoSandbox() {
  g_message("Web pages run without a sandbox: this machine does not allow one.");
  g_setenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS", "1", FALSE);
}

} // namespace zuvi
