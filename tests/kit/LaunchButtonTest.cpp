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

TEST_F(LaunchButtonTest, LaysItselfOutInProportion) {
  const auto layoutIn = [](const CGRect& frame) {
    const auto button = make<ZVKYCButton>(frame);
    button->layoutIfNeeded();
    EXPECT_FALSE(button->clipsToBounds()) << "the shadow lies outside";
    std::ostringstream words;
    for (const char* image :
         {"ZVZuviButtonLeftBackground", "ZVZuviButtonLeftIcon", "ZVZuviIcon", "", "shadow"}) {
      const auto view = imageNamed(*button, image);
      const CGRect at = view     ? view->frame()
                        : *image ? button->layer()->shadowPath().value().rect
                                 : labelOf(*button)->frame();
      for (const double number : {at.x, at.y, at.width, at.height})
        words << std::lround(number) << ' ';
      words << '|';
    }
    return words.str();
  };
  EXPECT_EQ(layoutIn({5, 6, 344, 68}),
            "0 0 79 68 |24 4 27 60 |293 4 27 60 |79 0 186 68 |12 12 344 68 |");
  EXPECT_EQ(layoutIn({0, 0, 100, 20}), // never narrower or lower than this
            "0 0 47 30 |14 4 16 22 |170 4 16 22 |47 0 105 30 |5 5 200 30 |");
}

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
  for (const auto& identity :
       {std::optional<std::string>("host's"), std::optional<std::string>()}) {
    ZVKYC::instance().identityId = identity;
    const auto events = backend.events().size();
    button->sendActions(UIControlEvent::TouchUpInside);
    EXPECT_NE(frame(), before);
    EXPECT_EQ(frame()->isOnlyFaceScan, identity.has_value());
    EXPECT_FALSE(frame()->isViewLoaded());
    EXPECT_TRUE(time.waitUntil([&] { return backend.events().size() == events + 1; }));
  }
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
