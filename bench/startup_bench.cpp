// From exec to the first frame of the demo's window, beside an empty window of the toolkit. Each
// prints a line after its first frame and draws as the toolkit chooses; wants a display.

#include "bench/Measure.h"

#include <gtk/gtk.h>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>

using namespace zuvi::bench;

namespace {

constexpr int rounds = 9;

int emptyWindow() {
  if (!gtk_init_check()) return 2;
  GtkWidget* window = gtk_window_new();
  gtk_window_set_default_size(GTK_WINDOW(window), 375, 812);
  gtk_window_present(GTK_WINDOW(window));
  GdkFrameClock* clock = gdk_surface_get_frame_clock(gtk_native_get_surface(GTK_NATIVE(window)));
  g_signal_connect(clock, "after-paint", G_CALLBACK(+[](GdkFrameClock*, gpointer) {
                     std::printf("window   first frame\n");
                     std::fflush(stdout);
                   }),
                   nullptr);
  g_main_loop_run(g_main_loop_new(nullptr, FALSE));
  return 0;
}

/// Seconds from exec until the program's first line that holds "first frame"; negative when it
/// ended without one.
double timeOf(const char* program, const char* argument) {
  int ends[2];
  if (pipe(ends) != 0) return -1;
  const double start = wallSeconds();
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], 1);
    close(ends[0]);
    execl(program, program, argument, nullptr);
    _exit(127);
  }
  close(ends[1]);
  std::FILE* lines = fdopen(ends[0], "r");
  double seconds = -1;
  char line[512];
  while (seconds < 0 && std::fgets(line, sizeof line, lines))
    if (std::strstr(line, "first frame")) seconds = wallSeconds() - start;
  std::fclose(lines);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  return seconds;
}

} // namespace

int main(int argc, char** argv) {
  if (argc == 2 && std::strcmp(argv[1], "--empty") == 0) return emptyWindow();
  std::vector<double> empty, demo;
  for (int i = 0; i < rounds; i++) {
    empty.push_back(timeOf("/proc/self/exe", "--empty"));
    demo.push_back(timeOf(ZUVI_DEMO_PROGRAM, nullptr));
    if (empty.back() < 0 || demo.back() < 0) {
      std::fprintf(stderr, "startup_bench: a program ended before its first frame; is there a "
                           "display?\n");
      return 1;
    }
  }
  const Figures baseline = figuresOf(empty);
  report("empty window, exec to first frame", baseline);
  report("zuvi-demo, exec to first frame", figuresOf(demo), &baseline);
}
