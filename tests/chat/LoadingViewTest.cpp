// The view over a page that is not there: its places in numbers, its states, its look.

#include "kit/Helper/LiveChat/LoadingView.h"
#include "platform/UIKit/ScreenPicture.h"
#include "tests/UIKit/Pixels.h"
#include "tests/chat/ChatTest.h"

namespace zuvi::test {
namespace {

struct Presser final : LoadingViewDelegate {
  std::string heard;
  void reload() override { heard += "reload "; }
  void close() override { heard += "close "; }
};

class LoadingViewTest : public ChatTest {
protected:
  LoadingViewTest() {
    window->makeKeyAndVisible();
    view->setFrame({0, 0, 375, 500});
    view->delegate = presser;
    view->startAnimation();
    window->addSubview(view);
    time.settle();
  }
  void TearDown() override {
    window->setVisible(false);
    window = nullptr;
    ChatTest::TearDown();
  }
  static void touch(CGPoint point) {
    UIApplication::shared().touchBegan(point);
    UIApplication::shared().touchEnded(point);
  }
  const CABasicAnimation* turning() const {
    return view->activityIndicator()->activityIndicator()->animation("rotationAnimation");
  }
  static std::string broken(int times) {
    std::string text;
    while (times--)
      text += "broken ";
    return text;
  }
  bool isShown(const UIView& part) const { return part.superview() == view.get(); }

  std::shared_ptr<UIWindow> window = make<UIWindow>();
  std::shared_ptr<LoadingView> view = make<LoadingView>();
  std::shared_ptr<Presser> presser = std::make_shared<Presser>();
};

TEST_F(LoadingViewTest, PutsItsPartsInTheirPlaces) {
  EXPECT_EQ(view->activityIndicator()->center(), (CGPoint{187.5, 230}));
  EXPECT_EQ(view->closeButton()->frame(), (CGRect{375 - 54, 10, 44, 44}));
  for (const std::string& text : {std::string("Short"), broken(60)}) {
    view->displayLoadingError(text);
    const auto error = view->errorView();
    const CGRect label = error->label()->frame(), button = error->reloadButton()->frame();
    EXPECT_LE(error->bounds().width, 335);
    EXPECT_EQ(error->center(), view->bounds().center());
    EXPECT_EQ(button.y, label.maxY() + 44);
    EXPECT_EQ(button.maxY(), error->bounds().height);
    EXPECT_EQ(label.height > 40, text.size() > 20) << "a long text wraps";
  }
}

TEST_F(LoadingViewTest, TheWayOutComesLateWithTheSpinnerAndAtOnceWithAnError) {
  const CGPoint close = view->closeButton()->center();
  EXPECT_TRUE(isShown(*view->activityIndicator()) && !isShown(*view->errorView()));
  time.advance(2.9);
  EXPECT_EQ(view->closeButton()->layer()->presentedOpacity(), 0);
  touch(close);
  EXPECT_EQ(presser->heard, "") << "it can't be seen yet";
  time.advance(0.5);
  EXPECT_EQ(view->closeButton()->layer()->presentedOpacity(), 1);
  touch(close);
  EXPECT_EQ(std::exchange(presser->heard, ""), "close ");

  view->startAnimation();
  EXPECT_EQ(view->closeButton()->layer()->presentedOpacity(), 0) << "each start waits anew";
  time.advance(1);
  view->displayLoadingError("No");
  EXPECT_EQ(view->closeButton()->layer()->presentedOpacity(), 1);
  EXPECT_TRUE(!isShown(*view->activityIndicator()) && isShown(*view->errorView()));
  EXPECT_FALSE(view->activityIndicator()->animating());
  const auto reload = view->errorView()->reloadButton();
  touch(reload->convertToScreen(reload->bounds()).center());
  EXPECT_TRUE(isShown(*view->activityIndicator()) && view->activityIndicator()->animating());

  view->displayLoadingError(broken(500));
  touch(close);
  EXPECT_EQ(presser->heard, "reload close ") << "no text covers the way out";
}

TEST_F(LoadingViewTest, TurnsOnWhereverItGoes) {
  const auto ring = view->activityIndicator()->activityIndicator();
  const auto comeBack = [] {
    UIApplication::shared().setActive(true);
    UIApplication::shared().setActive(false);
  };
  ASSERT_TRUE(turning());
  const double begun = turning()->beginTime;
  time.advance(0.25);
  view->activityIndicator()->startAnimation(); // adds nothing
  view->removeFromSuperview();
  window->addSubview(view);
  comeBack();
  EXPECT_EQ(turning()->beginTime, begun) << "it was never started anew";
  ring->removeAllAnimations();
  comeBack();
  ASSERT_TRUE(turning());
  view->displayLoadingError("No");
  ring->removeAllAnimations();
  comeBack();
  EXPECT_FALSE(turning()) << "a stopped one watches no longer";
}

TEST_F(LoadingViewTest, LooksLikeARingWithADarkQuarter) {
  view->activityIndicator()->activityIndicator()->removeAllAnimations();
  time.advance(4);
  const Pixels seen(surface.picture(), 2);
  const double y = view->activityIndicator()->frame().y + 30;
  EXPECT_TRUE(seen.at(187.5, y - 27).isNear({100, 112, 127}));
  EXPECT_TRUE(seen.at(187.5, y + 27).isNear({210, 218, 227}));
  EXPECT_TRUE(seen.at(187.5, y).isNear(white));
  const CGPoint cross = view->closeButton()->frame().center();
  EXPECT_TRUE(seen.at(cross.x, cross.y).isNear(black));
}

} // namespace
} // namespace zuvi::test
