// Where a window is shown: outputs, their scales, out of sight and back.

#include "tests/desktop/DesktopFixture.h"

namespace zuvi::test {
namespace {

class PlaceTest : public DesktopFixture {
protected:
  /// Opens the start of the flow, with its pictures, in a window of one size whatever the output.
  void openStart() {
    open({900, 900}, 2);
    compositor_->run("for_window [title=\"Harbour Rentals\"] floating enable");
    launch(intoStart);
    dumped("start");
    place();
  }
  void again() {
    program_.reset();
    compositor_->run("focus output HEADLESS-1");
    std::filesystem::remove(folder_.path("start"));
    launch(intoStart);
    dumped("start");
    place();
  }
  /// Small enough for the output at each of its scales, or the window would be made smaller.
  void place() {
    compositor_->run(window + "resize set 375 420; " + window + "move position 10 10");
  }
  void scale(const std::string& factor) {
    compositor_->run("output * scale " + factor);
    compositor_->run(window + "move position 10 10"); // its size stays, of which it is told nothing
  }
  /// Waits until the first output shows what it showed then.
  testing::AssertionResult comesToShow(const Pixels& wanted) {
    std::string difference;
    const bool same = reaches([&] {
      difference = Pixels::difference(compositor_->picture(), wanted, slack);
      return difference.empty();
    });
    return same ? testing::AssertionSuccess() : testing::AssertionFailure() << difference;
  }
  bool comesToHide(const Pixels& former) {
    return reaches(
        [&] { return !Pixels::difference(compositor_->picture(), former, slack).empty(); });
  }
  /// What stands on the first output once it no longer changes.
  Pixels settled() {
    Pixels before = compositor_->picture();
    int calm = 0;
    reaches([&] {
      const Pixels now = compositor_->picture();
      calm = Pixels::difference(now, before).empty() ? calm + 1 : 0;
      before = now;
      return calm == 10;
    });
    return before;
  }

  static constexpr int slack = 40; // of 255; what is blurred differs by far more at its edges
  const std::string window = "[title=\"Harbour Rentals\"] ";
  const std::string intoStart = R"drive(
wait HostViewController
expect launchButton.title "Login" 30
tap launchButton
wait ZVMainViewController 30
sleep 1
dump MARK/start
sleep 600
)drive";
};

TEST_F(PlaceTest, PicturesAreSharpAtEachScaleThatTheOutputTakes) {
  // What a program draws that has never known another scale
  openStart();
  scale("2");
  again();
  const Pixels two = settled();
  scale("1.5");
  again();
  const Pixels between = settled();
  scale("1");
  again();
  const Pixels one = settled();
  EXPECT_NE(Pixels::difference(one, two, 100), "");
  scale("2");
  EXPECT_TRUE(comesToShow(two));
  scale("1.5");
  EXPECT_TRUE(comesToShow(between));
  scale("1");
  EXPECT_TRUE(comesToShow(one));
}

TEST_F(PlaceTest, ComesBackWholeFromOtherPlaces) {
  openStart();
  const Pixels here = settled();
  compositor_->run(window + "move container to output HEADLESS-2");
  compositor_->run("output HEADLESS-2 scale 2");
  EXPECT_TRUE(comesToHide(here));
  compositor_->run("output HEADLESS-2 scale 1; " + window + "move container to output HEADLESS-1");
  place();
  EXPECT_TRUE(comesToShow(here)) << "after another output";
  compositor_->run("focus output HEADLESS-1; workspace hidden");
  EXPECT_TRUE(comesToHide(here));
  compositor_->run("workspace 1");
  EXPECT_TRUE(comesToShow(here)) << "after another workspace";
  compositor_->run(window + "fullscreen enable");
  EXPECT_TRUE(comesToHide(here));
  compositor_->run(window + "fullscreen disable");
  place();
  EXPECT_TRUE(comesToShow(here)) << "after full screen";
}

} // namespace
} // namespace zuvi::test
