#include "demo/program/DemoWindow.h"

#include <ZuviSDK/Dispatch/MainLoop.h>
#include <ZuviSDK/UIKit/ScreenWidget.h>
#include "demo/core/Toolkit.h"

#include <cstdio>

namespace zuvi::demo {

namespace {

void onFirstFrame(GdkFrameClock* clock, gpointer) {
  g_signal_handlers_disconnect_by_func(clock, gpointer(onFirstFrame), nullptr);
  std::printf("window   first frame\n");
  std::fflush(stdout);
}

} // namespace

bool openWindow(CGSize size, bool fullScreen, std::optional<double> textScale) {
  if (!startToolkit("zuvi-demo", textScale)) return false;
  GtkWidget* window = gtk_window_new();
  gtk_window_set_title(GTK_WINDOW(window), "Harbour Rentals");
  gtk_window_set_default_size(GTK_WINDOW(window), int(size.width), int(size.height));
  gtk_window_set_child(GTK_WINDOW(window), screenWidgetNew());
  g_signal_connect(window, "close-request", G_CALLBACK(+[](GtkWindow*, gpointer) -> gboolean {
                     MainLoop::stop();
                     return TRUE;
                   }),
                   nullptr);
  if (fullScreen) gtk_window_fullscreen(GTK_WINDOW(window));
  gtk_window_present(GTK_WINDOW(window));
  GdkFrameClock* clock = gdk_surface_get_frame_clock(gtk_native_get_surface(GTK_NATIVE(window)));
  g_signal_connect(clock, "after-paint", G_CALLBACK(onFirstFrame), nullptr);
  return true;
}

} // namespace zuvi::demo
