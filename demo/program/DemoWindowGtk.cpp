#include "demo/program/DemoWindow.h"

#include <ZuviSDK/Dispatch/MainLoop.h>
#include <ZuviSDK/UIKit/ScreenWidget.h>

#include <cstdio>

namespace zuvi::demo {

namespace {

void onFirstFrame(GdkFrameClock* clock, gpointer) {
  g_signal_handlers_disconnect_by_func(clock, gpointer(onFirstFrame), nullptr);
  std::printf("window   first frame\n");
  std::fflush(stdout);
}

} // namespace

bool openWindow(CGSize size, std::optional<double> textScale) {
  g_set_prgname("zuvi-demo"); // screen readers name the program so
  if (!gtk_init_check()) return false;
  if (textScale)
    g_object_set(gtk_settings_get_default(), "gtk-xft-dpi", int(*textScale * 96 * 1024), nullptr);
  GtkWidget* window = gtk_window_new();
  gtk_window_set_title(GTK_WINDOW(window), "Harbour Rentals");
  gtk_window_set_default_size(GTK_WINDOW(window), int(size.width), int(size.height));
  gtk_window_set_child(GTK_WINDOW(window), screenWidgetNew());
  g_signal_connect(window, "close-request", G_CALLBACK(+[](GtkWindow*, gpointer) -> gboolean {
                     MainLoop::stop();
                     return TRUE;
                   }),
                   nullptr);
  gtk_window_present(GTK_WINDOW(window));
  GdkFrameClock* clock = gdk_surface_get_frame_clock(gtk_native_get_surface(GTK_NATIVE(window)));
  g_signal_connect(clock, "after-paint", G_CALLBACK(onFirstFrame), nullptr);
  return true;
}

} // namespace zuvi::demo
