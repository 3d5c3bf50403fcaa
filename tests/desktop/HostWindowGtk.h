#pragma once

#include <ZuviSDK/UIKit/ScreenWidget.h>
#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/UIKit/UIScrollView.h"

#include <functional>

#include <gtest/gtest.h>

namespace zuvi::test {

/// A host's window without a border that shows the kit's screen above other contents and scrolls
/// both. The screen has a scroll view of its own.
class HostWindow : public testing::Test {
protected:
  static constexpr double side = 400; // points, of the window and of the kit's screen

  void open() {
    ASSERT_TRUE(gtk_init_check());
    window = make<UIWindow>();
    controller = make<UIViewController>();
    window->setRootViewController(controller);
    window->makeKeyAndVisible();
    scroller = make<UIScrollView>();
    scroller->setFrame({50, 50, 200, 200});
    scroller->setContentSize({300, 1000});
    controller->view()->addSubview(scroller);

    GtkWidget* column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    screen = screenWidgetNew();
    gtk_widget_set_size_request(screen, int(side), int(side));
    gtk_box_append(GTK_BOX(column), screen);
    GtkWidget* below = gtk_label_new("The host's own");
    gtk_widget_set_size_request(below, -1, 2000);
    gtk_box_append(GTK_BOX(column), below);
    GtkWidget* whole = gtk_scrolled_window_new();
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(whole), column);
    hosts = gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(whole));
    top = gtk_window_new();
    gtk_window_set_decorated(GTK_WINDOW(top), FALSE);
    gtk_window_set_default_size(GTK_WINDOW(top), int(side), int(side));
    gtk_window_set_child(GTK_WINDOW(top), whole);
    gtk_window_present(GTK_WINDOW(top));
  }
  void TearDown() override {
    if (top) gtk_window_destroy(GTK_WINDOW(top));
    // The toolkit ends a program whose display goes.
    if (GdkDisplay* open = gdk_display_get_default()) gdk_display_close(open);
  }

  static bool reaches(const std::function<bool()>& holds) {
    const gint64 end = g_get_monotonic_time() + 10 * G_USEC_PER_SEC;
    const guint tick = g_timeout_add(
        20, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    while (!holds() && g_get_monotonic_time() < end)
      g_main_context_iteration(nullptr, TRUE);
    g_source_remove(tick);
    return holds();
  }
  testing::AssertionResult comesTo(CGPoint offset, double host) {
    if (reaches([&] {
          return scroller->contentOffset() == offset && gtk_adjustment_get_value(hosts) == host;
        }))
      return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << scroller->contentOffset().x << ", " << scroller->contentOffset().y
           << " and the host's " << gtk_adjustment_get_value(hosts);
  }

  std::shared_ptr<UIWindow> window;
  std::shared_ptr<UIViewController> controller;
  std::shared_ptr<UIScrollView> scroller;
  GtkWidget *top = nullptr, *screen = nullptr;
  GtkAdjustment* hosts = nullptr;
};

} // namespace zuvi::test
