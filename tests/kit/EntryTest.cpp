// How a host registers, and the button that starts the flow.

#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Main/Public/ZVKYCButton.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "platform/UIKit/UINib.h"
#include "platform/UIKit/UITabBarController.h"
#include "platform/UIKit/UIWindow.h"
#include "tests/kit/KitTest.h"

namespace zuvi {
namespace {

class SessionEntryTest : public KitTest {};

TEST_F(SessionEntryTest, RegistersInOrder) {
  backend.hold();
  backend.answer(R"({"name":"N","configurations":[{"color":"red"}]})");
  int updates = 0;
  std::string nameWhenTold;
  const auto observer = NotificationCenter::defaultCenter().observe(
      merchantUpdatedNotification, [&](const Notification&) {
        updates++;
        nameWhenTold = ZVKYCHelper::instance().merchant->displayName.value_or("-");
      });
  std::filesystem::create_directory(documents);
  const std::string abandoned = folder.write("documents/.zuvi-film-1", "a film");
  ZVKYC::registerWithClientId("client 1", Value::Dictionary{{"a", 1}});
  EXPECT_TRUE(time.waitUntil([&] { return !std::filesystem::exists(abandoned); }));
  EXPECT_TRUE(time.waitUntil([&] { return backend.requests().size() == 1; }));
  EXPECT_EQ(backend.requests()[0].headers.at("authorization"), "Bearer client 1");
  EXPECT_EQ(updates, 0);
  backend.release();
  EXPECT_TRUE(time.waitUntil([&] { return updates == 1; }));
  EXPECT_EQ(nameWhenTold, "N") << "the record is in force before anybody is told";

  // Once more, without metadata and with another id.
  registerClient("2");
  EXPECT_EQ(backend.requests().back().headers.at("authorization"), "Bearer 2");
  EXPECT_FALSE(ZVKYC::instance().metadata);
  EXPECT_EQ(updates, 2);

  ZVKYCHelper::instance().clinetId = std::nullopt;
  time.settle();
  EXPECT_EQ(*transport().authorization, "Bearer 2") << "an absent id changes nothing";
  EXPECT_EQ(backend.requests().size(), 2U);

  Backend moved;
  ZVEndpoints::serverURL() = moved.url();
  registerClient("3");
  EXPECT_EQ(moved.requests().size(), 1U);
  EXPECT_EQ(backend.requests().size(), 2U);
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

TEST_F(SessionEntryTest, HoldsNoDelegateAndTellsNoneWithoutAnIdentity) {
  ZVKYCHelper& helper = ZVKYCHelper::instance();
  helper.success();
  EXPECT_TRUE(delegate->calls.empty());
  helper.tempIdentity = "run's";
  const std::weak_ptr<RecordingDelegate> gone = std::exchange(delegate, nullptr);
  EXPECT_TRUE(gone.expired());
  helper.success();
  helper.cancelled();
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
  void show(const std::shared_ptr<UIViewController>& root) {
    window->setRootViewController(root);
    window->makeKeyAndVisible();
    time.advance(1);
  }

  std::shared_ptr<UIWindow> window = make<UIWindow>();
};

TEST_F(LaunchButtonTest, FollowsTheMerchant) {
  const auto plain = make<ZVKYCButton>(), own = make<ZVKYCButton>();
  own->title = "Prove it";
  const auto expect = [&](const std::string& title, const UIColor& color) {
    EXPECT_EQ(labelOf(*plain)->text(), title);
    EXPECT_EQ(labelOf(*own)->text(), "Prove it");
    EXPECT_EQ(plain->backgroundColor(), color);
  };
  expect("Login", UIColor::bytes(33, 150, 243));
  setMerchant(R"({"configurations":[{"color":"red","language":"es"}]})");
  const std::string spanish = localized("login");
  EXPECT_NE(spanish, "Login");
  expect(spanish, UIColor::bytes(235, 87, 87));
  setMerchant(R"({"configurations":[{"color":"green","language":"fr"}]})");
  expect(spanish, UIColor::bytes(0, 178, 87)); // translated once, not again
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
  EXPECT_EQ(label->font()->pointSize(), 16);
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

  // Never laid out for less than 200 x 30.
  button->setFrame({0, 0, 100, 20});
  button->layoutIfNeeded();
  const double margin = 200 * 24 / 344.0, left = 2 * margin + 200 * 26 / 334.0 + 4;
  const double mark = 200 * 27 / 344.0;
  const std::pair<const UIView*, CGRect> rows[] = {
      {label.get(), {left, 0, 200 - 2 * left, 30}},
      {button->subviews()[2].get(), {0, 0, left, 30}},
      {button->subviews()[2]->subviews()[0].get(), {margin, 4, left - 2 * margin - 4, 22}},
      {button->subviews()[3].get(), {200 - mark - margin, 4, mark, 22}}};
  for (const auto& [part, frame] : rows) {
    EXPECT_NEAR(part->frame().x, frame.x, 1e-9);
    EXPECT_NEAR(part->frame().width, frame.width, 1e-9);
    EXPECT_NEAR(part->frame().height, frame.height, 1e-9);
  }
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
  const auto stack = make<UINavigationController>(make<UIViewController>());
  show(stack);
  EXPECT_EQ(zvKYCCurrentViewController(), stack->topViewController());
  const auto sheet = make<UIViewController>();
  stack->present(sheet, true);
  time.advance(1);
  EXPECT_EQ(zvKYCCurrentViewController(), sheet);
  // A stack within tabs is where the walk ends.
  const auto inTab = make<UINavigationController>(make<UIViewController>());
  const auto tabs = make<UITabBarController>(std::vector<UITabBarController::Tab>{{"Tab", inTab}});
  show(tabs);
  EXPECT_EQ(zvKYCCurrentViewController(), inTab);
}

} // namespace
} // namespace zuvi
