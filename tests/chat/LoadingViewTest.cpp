// The view over a page that is not there: its places in numbers, its states, its look.

#include "kit/Helper/LiveChat/LoadingView.h"
#include "platform/UIKit/ScreenPicture.h"
#include "tests/UIKit/Pixels.h"
#include "tests/chat/ChatTest.h"

#include <numbers>

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
  bool isShown(const UIView& part) const { return part.superview() == view.get(); }

  std::shared_ptr<UIWindow> window = make<UIWindow>();
  std::shared_ptr<LoadingView> view = make<LoadingView>();
  std::shared_ptr<Presser> presser = std::make_shared<Presser>();
};

TEST_F(LoadingViewTest, PutsItsPartsInTheirPlaces) {
  const auto spinner = view->activityIndicator();
  const CGSize word = spinner->label()->bounds().size();
  EXPECT_EQ(spinner->label()->text(), "Loading...");
  EXPECT_EQ(spinner->bounds().size(), (CGSize{std::max(60.0, word.width), word.height + 70}));
  EXPECT_EQ(spinner->center(), (CGPoint{187.5, 230}));
  const double wide = spinner->bounds().width;
  EXPECT_EQ(spinner->activityIndicator()->frame(), (CGRect{(wide - 60) / 2, 0, 60, 60}));
  EXPECT_EQ(spinner->label()->frame().y, 70);
  EXPECT_EQ(view->closeButton()->frame(), (CGRect{375 - 54, 10, 44, 44}));
  EXPECT_EQ(view->closeButton()->closeIcon()->frame(), (CGRect{15, 15, 14, 14}));
  EXPECT_EQ(view->closeButton()->accessibilityLabel, "Close");

  for (const std::string& text : {std::string("Short"), [] {
                                    std::string longText;
                                    for (int i = 0; i < 60; i++)
                                      longText += "broken ";
                                    return longText;
                                  }()}) {
    view->displayLoadingError(text);
    const auto error = view->errorView();
    const CGRect label = error->label()->frame(), button = error->reloadButton()->frame();
    EXPECT_LE(error->bounds().width, 335);
    EXPECT_EQ(error->center(), view->bounds().center());
    EXPECT_EQ(label.midX(), error->bounds().midX());
    EXPECT_EQ(button.midX(), error->bounds().midX());
    EXPECT_EQ(label.y, 0);
    EXPECT_EQ(button.y, label.maxY() + 44);
    EXPECT_EQ(button.maxY(), error->bounds().height);
    EXPECT_FALSE(error->label()->isClipped());
    EXPECT_EQ(label.height > 40, text.size() > 20) << "a long text wraps";
    const CGSize title = error->reloadButton()->UIButton::intrinsicContentSize();
    EXPECT_EQ(button.size(), (CGSize{title.width + 28, title.height + 12}));
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
  EXPECT_EQ(presser->heard, "reload ");
  EXPECT_TRUE(isShown(*view->activityIndicator()) && view->activityIndicator()->animating());

  std::string endless;
  for (int i = 0; i < 500; i++)
    endless += "broken ";
  view->displayLoadingError(endless);
  touch(close);
  EXPECT_EQ(presser->heard, "reload close ") << "no text covers the way out";
  presser = nullptr;
  touch(close);
}

TEST_F(LoadingViewTest, TurnsOnWhereverItGoes) {
  ASSERT_TRUE(turning());
  EXPECT_EQ(turning()->to[0], 2 * std::numbers::pi);
  EXPECT_EQ(turning()->duration, 1.0);
  const double begun = turning()->beginTime;
  time.advance(0.25);
  view->activityIndicator()->startAnimation(); // adds nothing
  view->removeFromSuperview();
  time.advance(1);
  window->addSubview(view);
  UIApplication::shared().setActive(false);
  UIApplication::shared().setActive(true);
  UIApplication::shared().setActive(false);
  EXPECT_EQ(turning()->beginTime, begun) << "it was never started anew";
  view->activityIndicator()->activityIndicator()->removeAllAnimations();
  UIApplication::shared().setActive(true);
  ASSERT_TRUE(turning()) << "back with the application";
  view->displayLoadingError("No");
  view->activityIndicator()->activityIndicator()->removeAllAnimations();
  UIApplication::shared().setActive(false);
  UIApplication::shared().setActive(true);
  UIApplication::shared().setActive(false);
  EXPECT_FALSE(turning()) << "a stopped one watches no longer";
}

TEST_F(LoadingViewTest, LooksLikeARingWithADarkQuarter) {
  view->activityIndicator()->activityIndicator()->removeAllAnimations();
  time.advance(4);
  const Pixels seen(surface.picture(), 2);
  const CGPoint middle{187.5, view->activityIndicator()->frame().y + 30};
  const Pixel dark{100, 112, 127}, light{210, 218, 227};
  const auto at = [&](double turn, double radius) {
    const double angle = turn * std::numbers::pi;
    return seen.at(middle.x + radius * std::cos(angle), middle.y + radius * std::sin(angle));
  };
  EXPECT_TRUE(at(-0.5, 27).isNear(dark)) << at(-0.5, 27);
  EXPECT_TRUE(at(-0.3, 27).isNear(dark));
  for (const double turn : {-0.2, 0.0, 0.5, 1.0, 1.2})
    EXPECT_TRUE(at(turn, 27).isNear(light)) << turn << ": " << at(turn, 27);
  EXPECT_TRUE(at(0, 22).isNear(white));
  // The X: its middle and the ends of its arms, and nothing beside them.
  const CGPoint cross = view->closeButton()->frame().center();
  for (const auto& [dx, dy] : {std::pair{0, 0}, {5, 5}, {-5, 5}, {5, -5}, {-5, -5}})
    EXPECT_TRUE(seen.at(cross.x + dx, cross.y + dy).isNear(black)) << dx << dy;
  EXPECT_TRUE(seen.at(cross.x + 5, cross.y).isNear(white));

  view->displayLoadingError("No");
  const auto reload = view->errorView()->reloadButton();
  reload->setHighlighted(true);
  view->closeButton()->setHighlighted(true);
  EXPECT_EQ(view->closeButton()->closeIcon()->fillColor().alpha, 0.5);
  EXPECT_EQ(reload->backgroundColor().alpha, 0.5);
  EXPECT_EQ(reload->titleLabel()->textColor(), UIColor::white());
  EXPECT_EQ(reload->titleLabel()->alpha(), 1) << "white, not dimmed";
  reload->setHighlighted(false);
  EXPECT_EQ(reload->backgroundColor(), UIColor::white());
}

} // namespace
} // namespace zuvi::test
