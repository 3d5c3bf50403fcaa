// The smallest host: one window, one button.

#include "../CommandLine.h"

using namespace zuvi;

static void showOutcome(const Verification& end) {
  if (end.result == Verification::Result::Verified) print("verified: " + end.identityId);
  if (end.result == Verification::Result::Cancelled) print("cancelled");
  if (end.result == Verification::Result::Failed) print("failed: " + end.problem);
}

int main(int argc, char** argv) {
  gtk_init();
  ZVKYC::registerWithClientId(readCommandLine(argc, argv));
  GtkWidget* window = gtk_window_new();
  gtk_window_set_title(GTK_WINDOW(window), "Minimal");
  gtk_window_set_default_size(GTK_WINDOW(window), 360, 120);
  gtk_window_set_child(GTK_WINDOW(window), launchButtonNew(showOutcome));
  g_signal_connect(window, "destroy", G_CALLBACK(+[] { MainLoop::stop(); }), nullptr);
  gtk_window_present(GTK_WINDOW(window));
  MainLoop::run();
}
