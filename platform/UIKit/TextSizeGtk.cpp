#include "platform/UIKit/TextSizeGtk.h"

#include "platform/UIKit/UIScreen.h"

namespace zuvi {

namespace {

/// The desktop tells of larger text by a higher resolution of fonts.
void onFontResolution(GtkSettings* settings, GParamSpec*, gpointer widget) {
  int resolution = 0; // in 1/1024 dots an inch; negative: unknown
  g_object_get(settings, "gtk-xft-dpi", &resolution, nullptr);
  if (resolution <= 0) return;
  UIScreen::main().setTextScale(resolution / (96.0 * 1024));
  gtk_widget_queue_resize(GTK_WIDGET(widget));
}

} // namespace

void followTextSize(GtkWidget* widget) {
  GtkSettings* settings = gtk_widget_get_settings(widget);
  g_signal_handlers_disconnect_by_func(settings, gpointer(onFontResolution), widget);
  g_signal_connect_object(settings, "notify::gtk-xft-dpi", G_CALLBACK(onFontResolution), widget,
                          GConnectFlags(0));
  onFontResolution(settings, nullptr, widget);
}

} // namespace zuvi
