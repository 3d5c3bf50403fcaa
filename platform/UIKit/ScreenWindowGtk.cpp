#include "platform/UIKit/ScreenWindow.h"

#include <ZuviSDK/UIKit/ScreenWidget.h>

#include <algorithm>

namespace zuvi {

namespace {

constexpr int smallWidth = 480, smallHeight = 600; // points; a window would be lost on less
constexpr int roomForBars = 96;                    // points, of the desktop's panel and the title

/// The size of the display that shows `parent`, else of the first one.
GdkRectangle displaySize(GtkWindow* parent) {
  GdkDisplay* display =
      parent ? gtk_widget_get_display(GTK_WIDGET(parent)) : gdk_display_get_default();
  GdkSurface* surface = parent ? gtk_native_get_surface(GTK_NATIVE(parent)) : nullptr;
  GdkMonitor* monitor = surface ? gdk_display_get_monitor_at_surface(display, surface) : nullptr;
  GdkRectangle area{0, 0, 0, 0};
  if (monitor) {
    gdk_monitor_get_geometry(monitor, &area);
  } else if (gpointer first = g_list_model_get_item(gdk_display_get_monitors(display), 0)) {
    gdk_monitor_get_geometry(GDK_MONITOR(first), &area);
    g_object_unref(first);
  }
  return area;
}

} // namespace

bool ScreenWindow::canOpen() {
  return gtk_is_initialized() && gdk_display_get_default();
}

ScreenWindow::ScreenWindow(GtkWindow* parent, const std::string& title, Shape shape)
    : window_(GTK_WINDOW(gtk_window_new())) {
  gtk_window_set_title(window_, title.c_str());
  const GdkRectangle display = displaySize(parent);
  gtk_window_set_default_size(
      window_, int(shape.size.width),
      std::min(int(shape.size.height), std::max(display.height - roomForBars, smallHeight / 2)));
  if (parent) {
    gtk_window_set_transient_for(window_, parent);
    gtk_window_set_destroy_with_parent(window_, TRUE);
    gtk_window_set_modal(window_, gtk_window_get_modal(parent)); // else the parent takes the clicks
  }
  // The host's application does not end before the window closes.
  GApplication* running = g_application_get_default();
  GtkApplication* application = parent ? gtk_window_get_application(parent) : nullptr;
  if (!application && GTK_IS_APPLICATION(running)) application = GTK_APPLICATION(running);
  if (application) gtk_window_set_application(window_, application);
  screen_ = screenWidgetNew();
  g_object_ref_sink(screen_);
  gtk_window_set_child(window_, screen_);
  gtk_window_set_focus(window_, screen_); // else the window moves it there as by a Tab
  const bool isSmall = display.width < smallWidth || display.height < smallHeight;
  if (shape.fullScreen || (display.width > 0 && isSmall)) gtk_window_fullscreen(window_);
  g_signal_connect(window_, "close-request", G_CALLBACK(+[](GtkWindow*, gpointer self) -> gboolean {
                     const auto action = static_cast<ScreenWindow*>(self)->onCloseRequest;
                     if (action) action();
                     return TRUE;
                   }),
                   this);
  g_signal_connect(window_, "destroy", G_CALLBACK(+[](GtkWindow*, gpointer data) {
                     auto* self = static_cast<ScreenWindow*>(data);
                     self->takeScreen();
                     self->window_ = nullptr;
                     const auto action = self->onDestroy;
                     if (action) action();
                   }),
                   this);
  gtk_window_present(window_);
}

ScreenWindow::~ScreenWindow() {
  if (!window_) return;
  g_signal_handlers_disconnect_by_data(window_, this);
  takeScreen();
  gtk_window_destroy(window_);
}

/// An event on its way may hold the widget, which then would go on to be the screen.
void ScreenWindow::takeScreen() {
  gtk_window_set_child(window_, nullptr);
  g_object_run_dispose(G_OBJECT(screen_));
  g_object_unref(screen_);
}

void ScreenWindow::present() {
  if (window_) gtk_window_present(window_);
}

} // namespace zuvi
