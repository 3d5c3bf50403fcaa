// The screen as a whole, and the program around it.

#include "platform/Foundation/NotificationCenter.h"
#include "platform/QuartzCore/DrawingContext.h"
#include "tests/UIKit/ControllerFixture.h"

namespace zuvi::test {
namespace {

class ScreenTest : public ControllerFixture {};

TEST_F(ScreenTest, ResizeReachesEveryScreenThatIsUp) {
  const auto root = screenNamed("r"), pushed = screenNamed("p"), sheet = screenNamed("s");
  const auto overlay = overlayNamed("o");
  const auto nav = stack(root);
  window->setRootViewController(nav);
  nav->pushViewController(pushed, true);
  UIScreen::main().configure({400, 600}, 2, {}); // in the middle of a movement
  time.advance(1);
  EXPECT_EQ(pushed->view()->frame(), (CGRect{0, 0, 400, 600}));
  nav->present(sheet, true);
  time.advance(0.1);
  UIScreen::main().configure({500, 300}, 2, {});
  time.advance(1);
  sheet->present(overlay, false);
  UIScreen::main().configure({320, 480}, 2, {});
  time.settle();
  for (const auto& screen : {sheet, overlay})
    EXPECT_EQ(screen->view()->frame(), (CGRect{0, 0, 320, 480})) << screen->name;
  sheet->dismiss(false);
  root->dismiss(false);
  nav->popViewController(false);
  time.settle();
  EXPECT_EQ(nav->view()->frame(), (CGRect{0, 0, 320, 480}));
  EXPECT_EQ(root->view()->frame(), (CGRect{0, 0, 320, 480}));
  UIScreen::main().configure({0, 480}, 2, {}); // no size at all
  EXPECT_EQ(UIScreen::main().bounds().width, 320);
}

/// Notes the scale that it is drawn at.
struct Scaled : UIView {
  std::vector<double> scales;
  void draw(DrawingContext& context) override { scales.push_back(context.scale()); }
};

TEST_F(ScreenTest, DrawingsAreMadeAnewForOtherPixels) {
  const auto view = add<Scaled>({0, 0, 10, 10});
  pictureOfScreen();
  pictureOfScreen();
  UIScreen::main().configure({320, 480}, 3, {});
  pictureOfScreen();
  EXPECT_EQ(view->scales, (std::vector<double>{2, 3}));
}

TEST_F(ScreenTest, AddressesGoToTheOpener) {
  std::vector<std::string> opened;
  auto& app = UIApplication::shared();
  app.setURLOpener([&](const URL& url) {
    opened.push_back(url.absoluteString());
    return opened.size() == 1;
  });
  EXPECT_TRUE(app.openURL(*URL::fromString("https://example.org/a?b=c")));
  EXPECT_FALSE(app.openURL(*URL::fromString(UIApplicationOpenSettingsURLString)));
  app.setURLOpener(nullptr);
  EXPECT_EQ(opened, (std::vector<std::string>{"https://example.org/a?b=c", "app-settings:"}));
}

TEST_F(ScreenTest, NoticesComeOnceForEveryChange) {
  std::string heard;
  auto& center = NotificationCenter::defaultCenter();
  const auto active = center.observe(UIApplicationDidBecomeActiveNotification,
                                     [&](const Notification&) { heard += "active "; });
  const auto resigned = center.observe(UIApplicationWillResignActiveNotification,
                                       [&](const Notification&) { heard += "resigned "; });
  auto& app = UIApplication::shared();
  app.setActive(true);
  app.setActive(true);
  EXPECT_TRUE(app.isActive());
  app.setActive(false);
  app.setActive(false);
  EXPECT_EQ(heard, "active resigned ");
}

} // namespace
} // namespace zuvi::test
