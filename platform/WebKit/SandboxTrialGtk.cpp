#include "platform/WebKit/SandboxTrialGtk.h"

#include <algorithm>
#include <vector>

#include <unistd.h>

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

// Setting a variable would move the list under other threads that read it. Here they find the old
// list or the new one, and both last.
WithoutSandbox::WithoutSandbox() : theirs_(environ) {
  static char variable[] = "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS=1";
  const guint count = theirs_ ? g_strv_length(theirs_) : 0;
  ours_ = new char*[count + 2]; // never deleted
  std::copy_n(theirs_, count, ours_);
  ours_[count] = variable; // last: a word of the host's own comes first
  ours_[count + 1] = nullptr;
  __atomic_store_n(&environ, ours_, __ATOMIC_RELEASE);
}

WithoutSandbox::~WithoutSandbox() {
  if (environ == ours_) __atomic_store_n(&environ, theirs_, __ATOMIC_RELEASE);
}

} // namespace zuvi
