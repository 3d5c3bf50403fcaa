#include "demo/core/Driver.h"

#include "platform/Dispatch/VirtualTime.h"
#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/JSONSerialization.h"
#include "platform/UIKit/OffscreenSurface.h"
#include "platform/UIKit/UIButton.h"
#include "platform/UIKit/UIViewController.h"
#include "platform/UIKit/UIWindow.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace zuvi::demo {
namespace {

TEST(DriveScript, SaysWhichLineIsWrong) {
  const std::vector<std::pair<std::string, std::string>> wrong{
      {"tap launchButton\nfly away", "2: "},
      {"tap", "1: "},
      {"\n\nsleep soon", "3: "},
      {"tap \"open", "1: "},
      {"expect label text", "1: "},
      {"wait Screen -1", "1: "},
      {"dump a b", "1: "}};
  for (const auto& [text, where] : wrong) {
    const auto parsed = parseDriveScript(text);
    ASSERT_TRUE(std::holds_alternative<std::string>(parsed)) << text;
    EXPECT_EQ(std::get<std::string>(parsed).rfind(where, 0), 0u) << std::get<std::string>(parsed);
  }
  const auto parsed =
      parseDriveScript("# nothing\n tap \"Say \\\"hi\\\"\" # quoted\r\nsleep 0.5\n");
  const auto& commands = std::get<std::vector<DriveCommand>>(parsed);
  ASSERT_EQ(commands.size(), 2u);
  EXPECT_EQ(commands[0].word(0), "Say \"hi\"");
  EXPECT_TRUE(commands[0].words[0].quoted);
  EXPECT_EQ(commands[1].line, 3);
}

/// A window with two buttons, one of them half out of reach, and a label.
class DriverTest : public ::testing::Test {
protected:
  void SetUp() override {
    window = make<UIWindow>();
    controller = make<UIViewController>();
    window->setRootViewController(controller);
    window->makeKeyAndVisible();
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
    hooks.picture = [this](const std::string& name) { return pictures.push_back(name), true; };
    hooks.outcomes = [this] { return outcomes; };
    hooks.done = [&](const std::string& failure) { result = failure; };
    Driver driver("a.drive", std::get<std::vector<DriveCommand>>(parsed), hooks);
    driver.start();
    time.advance(within);
    return result;
  }

  VirtualTime time;
  OffscreenSurface surface{{200, 300}, 1};
  std::shared_ptr<UIWindow> window;
  std::shared_ptr<UIViewController> controller;
  std::shared_ptr<UIButton> button;
  std::shared_ptr<UILabel> label;
  std::vector<std::string> pictures;
  int taps = 0, outcomes = 0;
};

TEST_F(DriverTest, TapsLooksAndPictures) {
  EXPECT_EQ(drive("wait UIViewController\ntap goButton\ntap \"Go on\"\npicture one\n"
                  "expect noteLabel.text \"all well\"\nexpect noteLabel.alpha 1\n"
                  "expect goButton.frame \"20 20 100 40\"\nexpect goButton.enabled true\n"),
            "");
  EXPECT_EQ(taps, 2);
  EXPECT_EQ(pictures, std::vector<std::string>{"one"});
}

TEST_F(DriverTest, SaysWhatWasExpectedAndWhatWasThere) {
  EXPECT_EQ(drive("\nexpect noteLabel.text broken"),
            "a.drive:2: noteLabel.text broken was expected, there was all well");
  EXPECT_EQ(drive("expect nobody.text x"),
            "a.drive:1: nobody.text x was expected, there was no such view");
  EXPECT_EQ(drive("wait OtherScreen 2"),
            "a.drive:1: the screen OtherScreen was expected, there was UIViewController");
  EXPECT_EQ(drive("outcome 1"), "a.drive:1: an outcome was expected, there was none");
}

TEST_F(DriverTest, RefusesToTapWhatAPersonCouldNot) {
  const auto problem = [&] { return drive("tap goButton"); };
  button->setHidden(true);
  EXPECT_NE(problem().find("hidden or transparent"), std::string::npos);
  button->setHidden(false);
  button->setAlpha(0);
  EXPECT_NE(problem().find("hidden or transparent"), std::string::npos);
  button->setAlpha(1);
  const auto cover = add<UIView>("cover", {0, 0, 200, 300});
  EXPECT_NE(problem().find("covered"), std::string::npos);
  cover->removeFromSuperview();
  EXPECT_EQ(problem(), "");
  EXPECT_EQ(taps, 1);
}

TEST_F(DriverTest, EachOutcomeIsWaitedForAnew) {
  outcomes = 1;
  EXPECT_EQ(drive("outcome"), "");
  EXPECT_EQ(drive("outcome\noutcome 1"), "a.drive:2: an outcome was expected, there was none");
}

TEST_F(DriverTest, DumpsTheTreeWithWhatIsOnIt) {
  const test::TemporaryFolder folder;
  const std::string path = folder.path() + "/dump.json";
  ASSERT_EQ(drive("dump " + path), "");
  const auto dump = JSONSerialization::jsonObject(FileManager::contents(path)->view());
  ASSERT_TRUE(dump && dump->dictionary());
  EXPECT_EQ(*dump->dictionary()->at("screens").listOfStrings(),
            std::vector<std::string>{"UIViewController"});
  const auto windows = *dump->dictionary()->at("windows").listOfDictionaries();
  const auto root = windows.at(0).at("children").listOfDictionaries()->at(0);
  const auto children = *root.at("children").listOfDictionaries();
  EXPECT_EQ(children.at(0).at("title"), Value("Go on"));
  EXPECT_EQ(children.at(0).at("outlet"), Value("goButton"));
  EXPECT_EQ(children.at(1).at("text"), Value("all well"));
  // A folder can't be replaced by a file.
  EXPECT_EQ(drive("dump " + folder.path()).rfind("a.drive:1: ", 0), 0u);
}

} // namespace
} // namespace zuvi::demo
