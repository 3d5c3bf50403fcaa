#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Main/Public/ZVKYCButton.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "platform/UIKit/UITabBarController.h"
#include "platform/UIKit/UIWindow.h"
#include "tests/kit/KitTest.h"

namespace zuvi {
namespace {

class LaunchButtonTest : public KitTest {
protected:
  LaunchButtonTest() { registerZVFonts(); }

  static std::shared_ptr<UIImageView> imageNamed(const UIView& view, const std::string& name) {
    for (const auto& subview : view.subviews()) {
      const auto image = std::dynamic_pointer_cast<UIImageView>(subview);
      if (image && image->image() && image->image()->name() == name) return image;
      if (const auto below = imageNamed(*subview, name)) return below;
    }
    return nullptr;
  }
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

void expectFrame(const CGRect& frame, const CGRect& expected, const std::string& what) {
  EXPECT_THAT(
      (std::array{frame.x, frame.y, frame.width, frame.height}),
      testing::Pointwise(testing::DoubleNear(0.01),
                         std::array{expected.x, expected.y, expected.width, expected.height}))
      << what;
}

TEST_F(LaunchButtonTest, LaysItselfOutInProportion) {
  const struct {
    CGRect frame, block, icon, mark, label, shadow;
  } rows[] = {
      {{5, 6, 344, 68},
       {0, 0, 78.778, 68},
       {24, 4, 26.778, 60},
       {293, 4, 27, 60},
       {78.778, 0, 186.443, 68},
       {12, 12, 344, 68}},
      // Never narrower or lower than this, whatever the frame.
      {{0, 0, 100, 20},
       {0, 0, 47.476, 30},
       {13.953, 4, 15.569, 22},
       {170.349, 4, 15.698, 22},
       {47.476, 0, 105.049, 30},
       {5.294, 5.294, 200, 30}},
  };
  for (const auto& row : rows) {
    const auto button = make<ZVKYCButton>(row.frame);
    button->layoutIfNeeded();
    EXPECT_EQ(button->frame(), row.frame);
    const auto block = imageNamed(*button, "ZVZuviButtonLeftBackground");
    const auto icon = imageNamed(*button, "ZVZuviButtonLeftIcon");
    ASSERT_TRUE(block && icon && labelOf(*button));
    expectFrame(block->frame(), row.block, "left block");
    expectFrame(icon->frame(), row.icon, "left icon");
    expectFrame(imageNamed(*button, "ZVZuviIcon")->frame(), row.mark, "right mark");
    expectFrame(labelOf(*button)->frame(), row.label, "label");
    expectFrame(button->layer()->shadowPath().value().rect, row.shadow, "shadow");
    EXPECT_EQ(icon->superview(), block.get());
    EXPECT_FALSE(button->clipsToBounds()) << "the shadow lies outside";
  }
  EXPECT_EQ(make<ZVKYCButton>()->intrinsicContentSize(), (CGSize{280, 60}));
}

TEST_F(LaunchButtonTest, FollowsTheMerchant) {
  const auto plain = make<ZVKYCButton>();
  const auto own = make<ZVKYCButton>();
  own->title = "Prove it";
  EXPECT_EQ(plain->backgroundColor(), UIColor::bytes(33, 150, 243));
  EXPECT_EQ(*plain->title, "Login");
  const auto expect = [&](const std::string& title, const UIColor& color) {
    EXPECT_EQ(*plain->title, title);
    EXPECT_EQ(labelOf(*plain)->text(), title);
    EXPECT_EQ(labelOf(*own)->text(), "Prove it");
    EXPECT_EQ(plain->backgroundColor(), color);
    EXPECT_EQ(own->backgroundColor(), color);
  };
  setMerchant("{}");
  expect("Login", UIColor::bytes(33, 150, 243));
  setMerchant(R"({"configurations":[{"color":"red","language":"es"}]})");
  const std::string spanish = localized("login");
  EXPECT_NE(spanish, "Login");
  expect(spanish, UIColor::bytes(235, 87, 87));
  setMerchant(R"({"configurations":[{"color":"green","language":"fr"}]})");
  expect(spanish, UIColor::bytes(0, 178, 87)); // translated once, not again
  EXPECT_EQ(*make<ZVKYCButton>()->title, localized("login")) << "a later button is right at once";
}

TEST_F(LaunchButtonTest, StartsNothingBeforeItMay) {
  const auto button = make<ZVKYCButton>();
  const auto before = ZVKYCHelper::instance().rootVC;
  button->sendActions(UIControlEvent::TouchUpInside);
  EXPECT_EQ(printed, std::vector<std::string>{"Please register with your client ID in AppDelegate. "
                                              "([ZVZuvi registerWithToken:'clientID'])"});
  EXPECT_EQ(ZVKYCHelper::instance().rootVC, before);

  // Registered, but nothing is on screen: a frame is made, reported and shown nowhere.
  registerClient("1");
  ZVKYC::instance().identityId = "host's";
  button->sendActions(UIControlEvent::TouchUpInside);
  EXPECT_NE(ZVKYCHelper::instance().rootVC, before);
  EXPECT_TRUE(ZVKYCHelper::instance().rootVC->isOnlyFaceScan);
  EXPECT_FALSE(ZVKYCHelper::instance().rootVC->isViewLoaded());
  EXPECT_TRUE(time.waitUntil([&] { return backend.events().size() == 1; }));
  ZVKYC::instance().identityId = std::nullopt;
  button->sendActions(UIControlEvent::TouchUpInside);
  EXPECT_FALSE(ZVKYCHelper::instance().rootVC->isOnlyFaceScan);
  EXPECT_TRUE(time.waitUntil([&] { return backend.events().size() == 2; }));
}

TEST_F(LaunchButtonTest, FindsTheScreenInFront) {
  EXPECT_FALSE(zvKYCCurrentViewController()) << "no window has the keys";
  const auto screen = make<UIViewController>();
  show(screen);
  EXPECT_EQ(zvKYCCurrentViewController(), screen);

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
