// The view over a page that is not there and its ways out.

#include "kit/Helper/LiveChat/LoadingView.h"
#include "kit/Helper/LiveChat/LoadingViewDrawing.h"
#include "platform/QuartzCore/CAAnimation.h"
#include "testing/UIKit/ScreenFixture.h"

#include <numbers>

namespace zuvi::test {
namespace {

struct Presser final : LoadingViewDelegate {
  std::string heard;
  void reload() override { heard += "reload "; }
  void close() override { heard += "close "; }
};

using LoadingViewTest = ScreenFixture;

TEST_F(LoadingViewTest, TheWayOutComesLateWithTheSpinnerAndAtOnceWithAnError) {
  const auto presser = std::make_shared<Presser>();
  const auto view = add<LoadingView>({0, 0, 320, 400});
  view->delegate = presser;
  view->startAnimation();
  time.settle();
  const auto isShown = [&](const UIView& part) { return part.superview() == view.get(); };
  const CGPoint close = view->closeButton()->center();
  EXPECT_TRUE(isShown(*view->activityIndicator()) && !isShown(*view->errorView()));
  EXPECT_EQ(view->activityIndicator()->center(), (CGPoint{160, 180}));
  EXPECT_EQ(view->activityIndicator()->backgroundColor(), UIColor::white());
  EXPECT_EQ(view->closeButton()->frame(), (CGRect{266, 10, 44, 44}));
  time.advance(0.25);
  const auto ring = view->activityIndicator()->layer()->sublayers().front();
  EXPECT_NEAR(ring->presented(LayerProperty::Rotation)[0], std::numbers::pi / 2, 1e-6);
  time.advance(2.65);
  EXPECT_EQ(view->closeButton()->layer()->presentedOpacity(), 0);
  tap(close);
  EXPECT_EQ(presser->heard, "") << "it can't be seen yet";
  time.advance(0.5);
  EXPECT_EQ(view->closeButton()->layer()->presentedOpacity(), 1);
  tap(close);
  EXPECT_EQ(std::exchange(presser->heard, ""), "close ");

  view->startAnimation();
  EXPECT_EQ(view->closeButton()->layer()->presentedOpacity(), 0) << "each start waits anew";
  time.advance(1);
  view->displayLoadingError("No");
  EXPECT_EQ(view->closeButton()->layer()->presentedOpacity(), 1);
  EXPECT_TRUE(!isShown(*view->activityIndicator()) && isShown(*view->errorView()));
  EXPECT_FALSE(view->activityIndicator()->animating());
  std::string texts;
  for (const auto& item : UIAccessibility::items())
    texts += item.element.name + "; ";
  EXPECT_NE(texts.find("No; "), std::string::npos) << texts;
  EXPECT_EQ(view->errorView()->center(), (CGPoint{160, 200}));
  const auto reload = view->errorView()->reloadButton();
  EXPECT_EQ(reload->layer()->borderColor(), darkGrey);
  EXPECT_EQ(reload->titleLabel()->textColor(), darkGrey);
  reload->setHighlighted(true);
  EXPECT_EQ(reload->backgroundColor(), darkGrey.withAlpha(0.5));
  reload->setHighlighted(false);
  tap(reload->convertToScreen(reload->bounds()).center());
  EXPECT_TRUE(isShown(*view->activityIndicator()) && view->activityIndicator()->animating());

  view->displayLoadingError(std::string(3500, 'x'));
  time.settle();
  tap(close);
  EXPECT_EQ(presser->heard, "reload close ") << "no text covers the way out";
  tap(reload->convertToScreen(reload->bounds()).center());
  EXPECT_EQ(presser->heard, "reload close reload ") << "or pushes the button off the screen";
}

} // namespace
} // namespace zuvi::test
