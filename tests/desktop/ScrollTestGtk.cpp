// A host's own window, in which the kit's screen stands above other contents: what the wheel and
// the touchpad move.

#include <ZuviSDK/UIKit/ScreenWidget.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/UIKit/UIScrollView.h"
#include "testing/desktop/Compositor.h"
#include "testing/support/ScopedEnvironment.h"

namespace zuvi::test {
namespace {

class ScrollTest : public testing::Test {
protected:
  static constexpr double side = 400; // points, of the output and of the kit's screen

  void SetUp() override {
    ASSERT_TRUE(compositor.isThere());
    ASSERT_TRUE(gtk_init_check());
    window = make<UIWindow>();
    auto controller = make<UIViewController>();
    window->setRootViewController(controller);
    window->makeKeyAndVisible();
    scroller = make<UIScrollView>();
    scroller->setFrame({50, 50, 200, 200});
    scroller->setContentSize({300, 1000});
    controller->view()->addSubview(scroller);

    GtkWidget* column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    GtkWidget* screen = screenWidgetNew();
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
    gtk_window_set_child(GTK_WINDOW(top), whole);
    gtk_window_present(GTK_WINDOW(top));
    // Alone it fills the output; the pointer finds it as soon as the compositor shows it.
    ASSERT_TRUE(reaches([&] {
      compositor.pointer().moveTo({150, 150});
      return gtk_widget_get_state_flags(screen) & GTK_STATE_FLAG_PRELIGHT;
    }));
  }
  void TearDown() override {
    if (top) gtk_window_destroy(GTK_WINDOW(top));
    // The toolkit ends a program whose compositor goes.
    if (GdkDisplay* open = gdk_display_get_default()) gdk_display_close(open);
  }

  static bool reaches(const std::function<bool()>& holds) {
    const guint limit = g_timeout_add_seconds(
        10, [](gpointer late) -> gboolean { return *static_cast<bool*>(late) = true; }, &late_);
    late_ = false;
    while (!holds() && !late_)
      g_main_context_iteration(nullptr, TRUE);
    g_source_remove(limit);
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

  static bool isActive() { return UIApplication::shared().isActive(); }

  Compositor compositor{{side, side}};
  const ScopedEnvironment runtime{"XDG_RUNTIME_DIR", compositor.runtimeFolder()},
      display{"WAYLAND_DISPLAY", Compositor::display}, x{"DISPLAY", std::nullopt};
  std::shared_ptr<UIWindow> window;
  std::shared_ptr<UIScrollView> scroller;
  static inline bool late_ = false;
  GtkWidget* top = nullptr;
  GtkAdjustment* hosts = nullptr;
};

TEST_F(ScrollTest, MovesWhatLiesUnderThePointerAndLeavesTheRestToTheHost) {
  // It is the renderer that this program got by itself, or was asked for.
  const std::string renderer =
      G_OBJECT_TYPE_NAME(gtk_native_get_renderer(GTK_NATIVE(top))); // not a plain one
  EXPECT_EQ(renderer == "GskCairoRenderer", std::getenv("GSK_RENDERER") != nullptr) << renderer;

  Pointer& pointer = compositor.pointer();
  pointer.turnWheel(2);
  EXPECT_TRUE(comesTo({0, 80}, 0)) << "forty points a notch";
  pointer.swipe(12, 30);
  EXPECT_TRUE(comesTo({12, 110}, 0)) << "as far as the fingers";
  // The wheel, as the host's widget takes the speed of fingers even where it is not asked.
  pointer.turnWheel(18);
  EXPECT_TRUE(comesTo({12, 800}, 0));
  pointer.turnWheel(1);
  EXPECT_TRUE(reaches([&] { return gtk_adjustment_get_value(hosts) > 0; })) << "at its end";
  gtk_adjustment_set_value(hosts, 0);
  pointer.moveTo({350, 350});
  pointer.turnWheel(1);
  EXPECT_TRUE(reaches([&] { return gtk_adjustment_get_value(hosts) > 0; })) << "beside it";
  EXPECT_EQ(scroller->contentOffset(), (CGPoint{12, 800}));
  // Under a host that has moved the screen away below the pointer
  gtk_adjustment_set_value(hosts, 100);
  pointer.moveTo({150, 100});
  pointer.turnWheel(-1);
  EXPECT_TRUE(comesTo({12, 760}, 100));
}

TEST_F(ScrollTest, WindowMayBeInFrontBeforeTheScreenIsInIt) {
  compositor.type("-s 9000 x >/dev/null 2>&1 &"); // a keyboard, which makes a window the active one
  EXPECT_TRUE(reaches(isActive));
  GtkWidget* whole = gtk_window_get_child(GTK_WINDOW(top));
  g_object_ref(whole);
  gtk_window_set_child(GTK_WINDOW(top), nullptr);
  EXPECT_FALSE(isActive()) << "it shows nowhere";
  gtk_window_set_child(GTK_WINDOW(top), whole);
  g_object_unref(whole);
  EXPECT_TRUE(isActive());
}

} // namespace
} // namespace zuvi::test
