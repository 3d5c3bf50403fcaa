#include <ZuviSDK/UIKit/UIButton.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include "demo/core/Driver.h"
#include "demo/core/Options.h"
#include "testing/UIKit/ScreenFixture.h"

namespace zuvi::demo {
namespace {

/// A window with a button and a label.
class DriverTest : public test::ScreenFixture {
protected:
  void SetUp() override {
    window->setRootViewController(controller);
    button = add<UIButton>("goButton", {20, 20, 100, 40});
    button->setTitle("Go on");
    button->addTarget(UIControlEvent::TouchUpInside, [this] { taps++; });
    label = add<UILabel>("noteLabel", {20, 80, 100, 20});
    label->setText("all well");
  }

  template <class View> std::shared_ptr<View> add(const std::string& name, const CGRect& frame) {
    auto view = make<View>();
    view->outletName = name;
    view->setFrame(frame);
    controller->view()->addSubview(view);
    return view;
  }

  /// The failure, empty for none; "never" when the script did not end.
  std::string drive(const std::string& script, double within = 60) {
    auto parsed = parseDriveScript(script);
    std::string result = "never";
    Driver::Hooks hooks;
    hooks.outcomes = [this] { return outcomes; };
    hooks.done = [&](const std::string& failure) { result = failure; };
    Driver driver("a.drive", std::get<std::vector<DriveCommand>>(parsed), hooks);
    driver.start();
    time.advance(within);
    return result;
  }

  std::shared_ptr<UIViewController> controller = make<UIViewController>();
  std::shared_ptr<UIButton> button;
  std::shared_ptr<UILabel> label;
  int taps = 0, outcomes = 0;
};

TEST_F(DriverTest, SaysWhatWasExpectedAndWhatWasThere) {
  EXPECT_EQ(drive("\nexpect noteLabel.text broken"),
            "a.drive:2: noteLabel.text broken was expected, there was all well");
  DispatchQueue::main().asyncAfter(1, [this] { label->setText("done"); });
  EXPECT_EQ(drive("expect noteLabel.text done 2"), "") << "with seconds it is waited for";
  EXPECT_EQ(drive("expect nobody.text x 2"),
            "a.drive:1: nobody.text x was expected, there was no such view");
  EXPECT_EQ(drive("wait OtherScreen 2"),
            "a.drive:1: the screen OtherScreen was expected, there was UIViewController");
  outcomes = 1; // each is waited for anew
  EXPECT_EQ(drive("outcome\noutcome 1"), "a.drive:2: an outcome was expected, there was none");
}

TEST_F(DriverTest, RefusesToTapWhatAPersonCouldNot) {
  const auto refused = [&](const char* why) {
    return drive("tap goButton").find(why) != std::string::npos;
  };
  button->setHidden(true);
  EXPECT_TRUE(refused("hidden or transparent"));
  button->setHidden(false);
  button->setAlpha(0);
  EXPECT_TRUE(refused("hidden or transparent"));
  button->setAlpha(1);
  add<UIView>("cover", {0, 0, 320, 480});
  EXPECT_TRUE(refused("covered"));
  EXPECT_EQ(taps, 0);
}

TEST(DemoOptions, RefusesWhatItCannotUse) {
  for (const std::string line :
       {"--colour red", "--client-id", "--client-id ", "--metadata novalue", "--metadata =x",
        "--server https://host/api", "--server ftp://host/", "--server host/", "--tracking nowhere",
        "--front-camera /no/such/film.mov", "--camera-permission perhaps", "--cameras some",
        "--screen 375", "--screen 375xfar", "--screen 0x812", "--screen 375x812@0",
        "--screen nanx812", "--ca /no/such/file.pem", "--drive /no/such/file.drive"}) {
    const auto space = line.find(' ');
    std::vector<std::string> arguments{line.substr(0, space)};
    if (space != std::string::npos) arguments.push_back(line.substr(space + 1));
    const auto parsed = parseOptions(arguments);
    ASSERT_TRUE(std::holds_alternative<std::string>(parsed)) << line;
    const auto& problem = std::get<std::string>(parsed);
    EXPECT_NE(problem.find(arguments.front()), std::string::npos) << problem;
    EXPECT_EQ(problem.find('\n'), std::string::npos) << problem;
  }
}

} // namespace
} // namespace zuvi::demo
