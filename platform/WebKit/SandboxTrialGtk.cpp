#include "platform/WebKit/SandboxTrialGtk.h"

#include <vector>

namespace zuvi {

static constexpr unsigned mostSeconds = 5;

SandboxTrial::SandboxTrial() {
  std::vector<const char*> command{"bwrap", "--unshare-pid", "--unshare-net", "--unshare-uts"};
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
  if (!process_) return false;
  enum class Outcome { Open, Good, Bad };
  Outcome outcome = Outcome::Open;
  GMainContext* context = g_main_context_new();
  g_main_context_push_thread_default(context);
  g_subprocess_wait_check_async(
      process_, nullptr,
      [](GObject* process, GAsyncResult* result, gpointer to) {
        const bool good = g_subprocess_wait_check_finish(G_SUBPROCESS(process), result, nullptr);
        *static_cast<Outcome*>(to) = good ? Outcome::Good : Outcome::Bad;
      },
      &outcome);
  // A sandbox that takes longer is none; the process ends and tells so below.
  GSource* limit = g_timeout_source_new_seconds(mostSeconds);
  g_source_set_callback(
      limit,
      [](gpointer process) -> gboolean {
        g_subprocess_force_exit(static_cast<GSubprocess*>(process));
        return G_SOURCE_REMOVE;
      },
      process_, nullptr);
  g_source_attach(limit, context);
  while (outcome == Outcome::Open)
    g_main_context_iteration(context, TRUE);
  g_source_destroy(limit);
  g_source_unref(limit);
  g_main_context_pop_thread_default(context);
  g_main_context_unref(context);
  return outcome == Outcome::Good;
}

} // namespace zuvi
