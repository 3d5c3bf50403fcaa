// A host's own window, in which the kit's screen stands above other contents: what the wheel and
// the touchpad move.

#include <ZuviSDK/UIKit/UIApplication.h>
#include "testing/desktop/Compositor.h"
#include "testing/support/ScopedEnvironment.h"
#include "tests/desktop/HostWindowGtk.h"

namespace zuvi::test {
namespace {

class ScrollTest : public HostWindow {
protected:
  void SetUp() override {
    ASSERT_TRUE(compositor.isThere());
    ASSERT_NO_FATAL_FAILURE(open());
    // Alone it fills the output; the pointer finds it as soon as the compositor shows it.
    ASSERT_TRUE(reaches([&] {
      compositor.pointer().moveTo({150, 150});
      return gtk_widget_get_state_flags(screen) & GTK_STATE_FLAG_PRELIGHT;
    }));
  }
  static bool isActive() { return UIApplication::shared().isActive(); }

  Compositor compositor{{side, side}};
  const ScopedEnvironment runtime{"XDG_RUNTIME_DIR", compositor.runtimeFolder()},
      display{"WAYLAND_DISPLAY", Compositor::display}, x{"DISPLAY", std::nullopt};
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
