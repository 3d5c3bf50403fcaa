// Where a window is shown: outputs, their scales, out of sight and back.

#include "tests/desktop/DesktopFixture.h"

namespace zuvi::test {
namespace {

class PlaceTest : public DesktopFixture {
protected:
  /// What a program shows of the start of the flow that has never known another scale.
  Pixels startedAt(const std::string& factor) {
    program_.reset();
    compositor_->run("output * scale " + factor);
    compositor_->run("focus output HEADLESS-1");
    std::filesystem::remove(folder_.path("start"));
    launch(intoStart);
    dumped("start");
    place();
    return settled();
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

TEST_F(PlaceTest, PicturesAreSharpAndWholeWhereverTheWindowGoes) {
  open({900, 900}, 2);
  compositor_->run("for_window " + window + "floating enable");
  const Pixels two = startedAt("2"), between = startedAt("1.5"), one = startedAt("1");
  EXPECT_NE(Pixels::difference(one, two, 100), "");
  for (const auto& [factor, picture] : {std::pair("2", two), {"1.5", between}, {"1", one}}) {
    scale(factor);
    EXPECT_TRUE(comesToShow(picture)) << factor;
  }
  // Each way out of sight, and back.
  for (const auto& [away, home] :
       {std::pair(window + "move container to output HEADLESS-2; output HEADLESS-2 scale 2",
                  "output HEADLESS-2 scale 1; " + window + "move container to output HEADLESS-1"),
        {"focus output HEADLESS-1; workspace hidden", "workspace back_and_forth"},
        {window + "fullscreen enable", window + "fullscreen disable"}}) {
    compositor_->run(away);
    EXPECT_TRUE(reaches([&] {
      return Pixels::difference(compositor_->picture(), one, slack) != "";
    })) << away;
    compositor_->run(home);
    place();
    EXPECT_TRUE(comesToShow(one)) << home;
  }
}

} // namespace
} // namespace zuvi::test
