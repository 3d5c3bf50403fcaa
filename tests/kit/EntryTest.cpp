// How a host registers, and the button that starts the flow.

#include <ZuviSDK/LiveChat.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIImageView.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include <ZuviSDK/UIKit/UINib.h>
#include <ZuviSDK/UIKit/UITabBarController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include <ZuviSDK/ZVKYCButton.h>
#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "platform/Dispatch/AssertMainQueue.h"
#include "testing/kit/KitTest.h"

#include <thread>

namespace zuvi {
namespace {

class SessionEntryTest : public KitTest {};

TEST_F(SessionEntryTest, RegistersInOrder) {
  backend.hold();
  backend.answer(R"({"name":"N","configurations":[{"color":"red"}]})");
  std::string names; // each when it was told of
  const auto observer = NotificationCenter::defaultCenter().observe(
      merchantUpdatedNotification, [&](const Notification&) {
        names += ZVKYCHelper::instance().merchant->displayName.value_or("-");
      });
  std::filesystem::create_directory(documents);
  const std::string abandoned = folder.write("documents/.zuvi-film-1", "a film");
  ZVKYC::registerWithClientId("client 1", Value::Dictionary{{"a", 1}});
  EXPECT_TRUE(time.waitUntil([&] { return !std::filesystem::exists(abandoned); }));
  EXPECT_TRUE(time.waitUntil([&] { return backend.requests().size() == 1; }));
  EXPECT_EQ(backend.requests()[0].headers.at("authorization"), "Bearer client 1");
  EXPECT_EQ(names, "");
  backend.release();
  EXPECT_TRUE(time.waitUntil([&] { return names == "N"; })) << names;

  // Once more, without metadata and with another id; an absent one changes nothing.
  registerClient("2");
  EXPECT_EQ(backend.requests().back().headers.at("authorization"), "Bearer 2");
  EXPECT_FALSE(ZVKYC::instance().metadata);
  ZVKYCHelper::instance().clinetId = std::nullopt;
  time.settle();
  EXPECT_EQ(*transport().authorization, "Bearer 2");

  Backend moved;
  ZVEndpoints::serverURL() = moved.url();
  registerClient("3");
  EXPECT_EQ(moved.requests().size(), 1U);
  EXPECT_EQ(backend.requests().size(), 2U);
}

TEST(MainThreadTest, IsWhereTheKitIsTouched) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const std::pair<const char*, void (*)()> rows[] = {
      {"ZVKYC", [] { ZVKYC::instance(); }},
      {"The support chat", [] { LiveChat::dismissChat(); }},
      {"The support chat", [] { LiveChat::unreadMessagesCount(); }},
      {"A screen", [] { make<UIViewController>(); }},
      {"A view", [] { make<UIView>(); }},
      {"The application", [] { UIApplication::shared(); }},
      {"The notification centre", [] { NotificationCenter::defaultCenter().post("any"); }}};
  assertMainQueue("This one"); // makes the queue on this thread
  for (const auto& [what, touch] : rows)
    EXPECT_DEATH(std::thread(touch).join(),
                 std::string(what) + " .*DispatchQueue::main\\(\\)\\.async");
}

TEST_F(SessionEntryTest, SaysAtOnceWhatCannotBeSent) {
  const struct {
    std::string client, server;
    bool told;
  } rows[] = {{"1", backend.url(), false},
              {"1\r\nX: 2", backend.url(), true},
              {"1", "back end", true},
              {"1", "ftp://127.0.0.1/", true},
              {"1", "https://host:99999/", true},
              {"1", "https:///", true}};
  for (const auto& [client, server, told] : rows) {
    SCOPED_TRACE(client + ' ' + server);
    ZVEndpoints::serverURL() = server;
    testing::internal::CaptureStderr();
    ZVKYC::registerWithClientId(client);
    const std::string line = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), told ? 1 : 0) << line;
    time.settle();
  }
}

TEST_F(SessionEntryTest, KeepsTheRecordWhenNoMerchantComes) {
  backend.answer(R"({"name":"First"})");
  registerClient("1");
  const auto kept = ZVKYCHelper::instance().merchant;
  backend.answer("[]");
  registerClient("1");
  EXPECT_EQ(ZVKYCHelper::instance().merchant, kept);
  backend.answer(R"({"message":"who are you"})", 401);
  registerClient("1");
  EXPECT_FALSE(ZVKYCHelper::instance().merchant->displayName) << "an error object is a record too";
}

class LaunchButtonTest : public KitTest {
protected:
  static std::shared_ptr<UILabel> labelOf(const UIView& button) {
    return std::dynamic_pointer_cast<UILabel>(button.subviews().back());
  }
  static void setMerchant(const std::string& json) {
    ZVKYCHelper::instance().merchant = std::make_shared<ZVKYCMerchant>(dictionary(json));
    NotificationCenter::defaultCenter().post(merchantUpdatedNotification);
  }
  std::shared_ptr<UIWindow> window = make<UIWindow>();
};

TEST_F(LaunchButtonTest, FollowsTheMerchant) {
  const auto plain = make<ZVKYCButton>(), own = make<ZVKYCButton>();
  own->title = "Prove it";
  const auto look = [&] {
    return textFromColor(plain->backgroundColor()) + " " + *labelOf(*plain)->text() + ", " +
           *labelOf(*own)->text();
  };
  EXPECT_EQ(look(), "#2196F3 Login, Prove it");
  setMerchant(R"({"configurations":[{"color":"red","language":"es"}]})");
  const std::string spanish = localized("login");
  EXPECT_NE(spanish, "Login");
  EXPECT_EQ(look(), "#EB5757 " + spanish + ", Prove it");
  setMerchant(R"({"configurations":[{"color":"green","language":"fr"}]})");
  EXPECT_EQ(look(), "#00B257 " + spanish + ", Prove it") << "translated once, not again";
  EXPECT_EQ(*make<ZVKYCButton>()->title, localized("login")) << "a later button is right at once";
}

TEST_F(LaunchButtonTest, StandsInAHostsNib) {
  folder.write("Host.xml", R"(<nib owner="Host"><ZVKYCButton title="Mine" background="#FF0000"
      frame="0 0 280 60"/></nib>)");
  const auto loaded =
      UINib("Host", std::make_shared<Bundle>(folder.path())).instantiate(NibDeclaration());
  const auto button = std::dynamic_pointer_cast<ZVKYCButton>(loaded.view);
  ASSERT_TRUE(button) << loaded.error;
  EXPECT_FALSE(button->UIButton::title());
  EXPECT_EQ(button->backgroundColor(), UIColor::bytes(33, 150, 243));
  const auto label = labelOf(*button);
  registerZVFonts(); // for the first time where this test has a process of its own
  EXPECT_EQ(label->font()->name(), "SFProText-Regular");
  EXPECT_EQ(label->font()->pointSize(), 16);
  const auto isClipped = [&](const char* title, double scale) {
    UIScreen::main().setTextScale(scale);
    button->title = title;
    button->setNeedsLayout();
    button->layoutIfNeeded();
    return label->isClipped();
  };
  EXPECT_FALSE(isClipped("Verify yourself", 1.5)) << "larger text shrinks to fit";
  EXPECT_TRUE(isClipped("Verify your identity now", 1)) << "at its own size it does not";

  button->setFrame({0, 0, 344, 68});
  button->layoutIfNeeded();
  const double side = 344 * 26.0 / 334, left = 48 + side + 4;
  const auto parts = button->subviews();
  const std::pair<CGRect, CGRect> places[] = {{parts[2]->subviews()[0]->frame(), {24, 4, side, 60}},
                                              {parts[3]->frame(), {344 - 27 - 24, 4, 27, 60}},
                                              {label->frame(), {left, 0, 344 - 2 * left, 68}}};
  for (const auto& [frame, place] : places)
    for (const double miss : {frame.x - place.x, frame.y - place.y, frame.width - place.width,
                              frame.height - place.height})
      EXPECT_NEAR(miss, 0, 1e-9) << place.x;
  for (const auto& icon : {parts[2]->subviews()[0], parts[3]})
    EXPECT_TRUE(std::dynamic_pointer_cast<UIImageView>(icon)->image());
  // Never laid out for less than 200 x 30; the words stand between the pictures.
  button->setFrame({0, 0, 100, 20});
  button->layoutIfNeeded();
  const CGRect words = label->frame();
  EXPECT_NEAR(words.x + words.width / 2, 100, 1e-9);
  EXPECT_EQ(words.height, 30);
  EXPECT_EQ(words.x, button->subviews()[2]->frame().maxX());
  EXPECT_LE(words.maxX(), button->subviews()[3]->frame().x);
  EXPECT_EQ(button->layer()->shadowPath()->rect.width, 200);
}

TEST_F(LaunchButtonTest, StartsNothingBeforeItMay) {
  const auto button = make<ZVKYCButton>();
  const auto frame = [] { return ZVKYCHelper::instance().rootVC; };
  const auto before = frame();
  button->sendActions(UIControlEvent::TouchUpInside);
  EXPECT_EQ(printed, std::vector<std::string>{"Please register with your client ID in AppDelegate. "
                                              "([ZVZuvi registerWithToken:'clientID'])"});
  EXPECT_EQ(frame(), before);

  // Registered, but nothing is on screen: a frame is made, reported and shown nowhere.
  registerClient("1");
  button->sendActions(UIControlEvent::TouchUpInside);
  EXPECT_NE(frame(), before);
  EXPECT_FALSE(frame()->isViewLoaded());
  EXPECT_TRUE(time.waitUntil([&] { return backend.events().size() == 1; }));
}

TEST_F(LaunchButtonTest, FindsTheScreenInFront) {
  EXPECT_FALSE(zvKYCCurrentViewController()) << "no window has the keys";
  const auto show = [&](const std::shared_ptr<UIViewController>& root) {
    window->setRootViewController(root);
    window->makeKeyAndVisible();
    time.advance(1);
  };
  const auto stack = make<UINavigationController>(make<UIViewController>());
  show(stack);
  EXPECT_EQ(zvKYCCurrentViewController(), stack->topViewController());
  const auto sheet = make<UIViewController>();
  stack->present(sheet, false);
  EXPECT_EQ(zvKYCCurrentViewController(), sheet);
  // A stack within tabs is where the walk ends.
  const auto inTab = make<UINavigationController>(make<UIViewController>());
  show(make<UITabBarController>(std::vector<UITabBarController::Tab>{{"Tab", inTab}}));
  EXPECT_EQ(zvKYCCurrentViewController(), inTab);
}

} // namespace
} // namespace zuvi
