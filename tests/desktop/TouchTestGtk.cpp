// The same window under a finger.

#include <ZuviSDK/UIKit/UIButton.h>
#include "testing/desktop/TouchScreen.h"
#include "testing/support/ScopedEnvironment.h"
#include "tests/desktop/HostWindowGtk.h"

namespace zuvi::test {
namespace {

class TouchTest : public HostWindow {
protected:
  void SetUp() override {
    ASSERT_TRUE(touch.isThere());
    ASSERT_NO_FATAL_FAILURE(open());
    button = make<UIButton>();
    button->setFrame({300, 300, 80, 60});
    button->addTarget(UIControlEvent::TouchDown, [this] { downs++; });
    button->addTarget(UIControlEvent::TouchUpInside, [this] { taps++; });
    controller->view()->addSubview(button);
    // The server knows the window some time after it was opened. A tap a frame at most, as taps
    // come before drawing.
    ASSERT_TRUE(reaches([&] {
      static gint64 frame = 0;
      GdkFrameClock* clock = gtk_widget_get_frame_clock(top);
      if (std::exchange(frame, gdk_frame_clock_get_frame_counter(clock)) != frame) {
        touch.press({340, 330});
        touch.lift();
      }
      gtk_widget_queue_draw(top);
      return downs > 0;
    }));
    ASSERT_TRUE(reaches([&] { return taps == downs; }));
  }
  void drag(CGPoint from, double down) {
    touch.press(from);
    for (int i = 1; i <= 10; i++)
      touch.moveTo({from.x, from.y + down * i / 10});
  }
  double offset() const { return scroller->contentOffset().y; }
  double hostsOffset() const { return gtk_adjustment_get_value(hosts); }

  TouchScreen touch;
  const ScopedEnvironment display{"DISPLAY", touch.display()},
      wayland{"WAYLAND_DISPLAY", std::nullopt};
  std::shared_ptr<UIButton> button;
  int downs = 0, taps = 0;
};

TEST_F(TouchTest, AFingerMovesWhatLiesUnderItAndLeavesTheRestToTheHost) {
  drag({150, 200}, -100);
  EXPECT_TRUE(reaches([&] { return std::lround(offset()) == 100; })) << offset();
  touch.lift();
  EXPECT_EQ(hostsOffset(), 0) << "which lies around the screen";
  // From the button on, a finger that moves is the host's and no tap.
  const int before = downs;
  drag({340, 330}, -100);
  EXPECT_TRUE(reaches([&] { return std::lround(hostsOffset()) == 100; })) << hostsOffset();
  touch.lift();
  EXPECT_EQ(std::lround(offset()), 100);
  EXPECT_EQ(downs, before + 1);
  EXPECT_EQ(taps, before);
}

} // namespace
} // namespace zuvi::test
