#include "demo/program/DemoWindow.h"

#include "platform/Dispatch/MainLoop.h"
#include "platform/UIKit/ScreenWidget.h"

namespace zuvi::demo {

bool openWindow(CGSize size) {
  // Without a GPU the plain renderer is the faster one; a choice of the person's own stands.
  g_setenv("GSK_RENDERER", "cairo", FALSE);
  if (!gtk_init_check()) return false;
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
  return true;
}

} // namespace zuvi::demo
