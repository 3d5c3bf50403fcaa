#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Dispatch/MainLoop.h>

#include <algorithm>
#include <cmath>

#include <glib.h>

namespace zuvi {

namespace {

// Asked anew at each turn of the loop: a wake-up can then not be lost between reading the next
// deadline and going to sleep.
gboolean prepare(GSource*, gint* timeout) {
  auto& queue = DispatchQueue::main();
  const double wait = queue.nextDeadline() - queue.now();
  if (wait <= 0) {
    *timeout = 0;
    return TRUE;
  }
  *timeout = std::isinf(wait) ? -1 : static_cast<gint>(std::ceil(std::min(wait, 1e6) * 1000));
  return FALSE;
}

gboolean check(GSource*) {
  auto& queue = DispatchQueue::main();
  return queue.nextDeadline() <= queue.now() ? TRUE : FALSE;
}

gboolean dispatch(GSource*, GSourceFunc, gpointer) {
  DispatchQueue::main().runDue();
  return G_SOURCE_CONTINUE;
}

GMainLoop* runningLoop = nullptr;

} // namespace

void MainLoop::attach() {
  auto& queue = DispatchQueue::main();
  queue.adoptCurrentThread();
  static GSource* source = nullptr;
  if (source) return;
  static GSourceFuncs functions = {prepare, check, dispatch, nullptr, nullptr, nullptr};
  source = g_source_new(&functions, sizeof(GSource));
  g_source_set_name(source, "main queue");
  g_source_set_can_recurse(source, TRUE); // work may run a loop of its own, such as a dialogue's
  g_source_attach(source, nullptr);
  queue.setWakeUp([] { g_main_context_wakeup(nullptr); });
}

void MainLoop::run() {
  attach();
  GMainLoop* const outer = runningLoop;
  GMainLoop* const loop = runningLoop = g_main_loop_new(nullptr, FALSE);
  g_main_loop_run(loop);
  g_main_loop_unref(loop);
  runningLoop = outer;
}

void MainLoop::stop() {
  if (runningLoop) g_main_loop_quit(runningLoop);
}

} // namespace zuvi
