// The tree of views: edits, frames, and which view a touch finds.

#include "platform/QuartzCore/CAAnimation.h"
#include "testing/UIKit/ScreenFixture.h"

#include <numbers>

namespace zuvi::test {
namespace {

class ViewTest : public ScreenFixture {
protected:
  static UIView* hit(double x, double y) { return UIApplication::shared().hitTest({x, y}); }
};

TEST_F(ViewTest, TreeEditsKeepViewsAndLayersInStep) {
  const auto parent = add({0, 0, 100, 100});
  const auto a = make<UIView>(), b = make<UIView>(), c = make<UIView>();
  parent->layer()->addSublayer(std::make_shared<CALayer>()); // no view's; stays below
  parent->addSubview(a);
  parent->addSubview(c);
  parent->insertSubview(b, 1);
  using Views = std::vector<std::shared_ptr<UIView>>;
  parent->bringSubviewToFront(a);
  EXPECT_EQ(parent->subviews(), (Views{b, c, a}));
  parent->insertSubview(a, 0); // moves what is there
  EXPECT_EQ(parent->subviews(), (Views{a, b, c}));
  b->addSubview(a);
  a->addSubview(parent); // into its own subtree: nothing happens
  a->layer()->addSublayer(parent->layer());
  EXPECT_EQ(a->layer()->superlayer(), b->layer().get());
  EXPECT_EQ(parent->superview(), window.get());
  EXPECT_EQ(parent->layer()->superlayer(), window->layer().get());
}

TEST_F(ViewTest, TouchFindsTheTopmostViewThatCanBeSeen) {
  const auto lower = add({0, 0, 100, 100}), upper = add({0, 0, 100, 100});
  for (const auto& conceal : std::vector<std::function<void(bool)>>{
           [&](bool away) { upper->setHidden(away); },
           [&](bool away) { upper->setAlpha(away ? 0.005 : 1); },
           [&](bool away) { upper->setUserInteractionEnabled(!away); }}) {
    EXPECT_EQ(hit(50, 50), upper.get());
    conceal(true);
    EXPECT_EQ(hit(50, 50), lower.get());
    conceal(false);
  }
  upper->setAlpha(0);
  UIView::animate(1, 2, {}, [&] { upper->setAlpha(1); });
  EXPECT_EQ(hit(50, 50), lower.get()) << "it has yet to fade in";
  time.advance(2.5);
  EXPECT_EQ(hit(50, 50), upper.get());
  window->bringSubviewToFront(lower);
  EXPECT_EQ(hit(50, 50), lower.get());
  EXPECT_EQ(hit(100, 0), window.get()); // the right edge is outside
  const auto out = make<UIView>(CGRect{90, 0, 50, 50});
  lower->addSubview(out);
  EXPECT_EQ(hit(95, 10), out.get());
  EXPECT_EQ(hit(120, 10), window.get()); // sticks out, and is not found there
}

TEST_F(ViewTest, TouchFollowsTransforms) {
  const auto view = add({100, 100, 80, 20});
  view->setTransform(CGAffineTransform::rotation(std::numbers::pi / 2));
  EXPECT_EQ(hit(140, 80), view.get());
  EXPECT_EQ(hit(105, 110), window.get());
  EXPECT_NEAR(view->convert({130, 70, 20, 40}, nullptr).x, 0, 1e-9);
  EXPECT_EQ(window->convert({0, 0, 80, 20}, view.get()), view->frame());
  view->setTransform(CGAffineTransform::scale(0, 0));
  EXPECT_EQ(hit(140, 110), window.get());
  view->setTransform({});
  UIView::animate(1, [&] { view->setCenter({250, 110}); });
  EXPECT_EQ(hit(250, 110), view.get()); // touches go by where it will be
  time.advance(2);
}

TEST_F(ViewTest, SubviewsGrowWithTheirParentWhereTheyMay) {
  const auto parent = add({0, 0, 100, 100});
  const auto view = make<UIView>(CGRect{10, 10, 50, 20});
  view->setAutoresizingMask(FlexibleWidth | FlexibleTopMargin);
  parent->addSubview(view);
  parent->setFrame({0, 0, 160, 140});
  time.settle();
  EXPECT_EQ(view->frame(), (CGRect{10, 50, 110, 20}));
}

/// Changes something at every layout.
struct Mover : UIView {
  std::function<void()> change = [] {};
  int layouts = 0;
  void layoutSubviews() override {
    layouts++;
    change();
  }
};

TEST_F(ViewTest, LayoutMovesTheEndOfWhatIsOnItsWayAndCutsNothingShort) {
  const auto view = add({0, 0, 10, 20});
  bool finished = false;
  UIView::animate(
      1,
      [&] {
        view->setFrame({0, 0, 10, 100});
      },
      [&](bool all) { finished = all; });
  time.advance(0.5);
  const auto mover = add<Mover>({0, 0, 10, 10});
  mover->change = [&] { view->setFrame({0, 0, 10, 101}); };
  mover->layoutIfNeeded();
  EXPECT_NEAR(view->layer()->presented(LayerProperty::Bounds)[3], 60, 1);
  time.advance(0.6);
  EXPECT_TRUE(finished);
  EXPECT_EQ(view->frame().height, 101);
}

TEST_F(ViewTest, ViewThatMarksItselfAtEveryLayoutDoesNotHangTheProgram) {
  const auto restless = add<Mover>({0, 0, 10, 10});
  restless->change = [&view = *restless] { view.setNeedsLayout(); };
  surface.drawFrame();
  time.settle();
  EXPECT_LE(restless->layouts, 100);
  const int before = restless->layouts;
  time.advance(1); // nor keep it busy
  EXPECT_EQ(restless->layouts, before);
  restless->removeFromSuperview();
}

} // namespace
} // namespace zuvi::test
