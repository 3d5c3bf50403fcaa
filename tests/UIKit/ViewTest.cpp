// The tree of views: edits, frames, and which view a touch finds.

#include "platform/UIKit/UIButton.h"
#include "tests/UIKit/ScreenFixture.h"

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
  EXPECT_EQ(parent->subviews(), (Views{a, b, c}));
  EXPECT_EQ(parent->layer()->sublayers()[2], b->layer());
  parent->bringSubviewToFront(a);
  EXPECT_EQ(parent->subviews(), (Views{b, c, a}));
  EXPECT_EQ(parent->layer()->sublayers().back(), a->layer());
  parent->insertSubview(a, 0); // moves what is there
  EXPECT_EQ(parent->subviews(), (Views{a, b, c}));
  b->addSubview(a);
  EXPECT_EQ(parent->subviews(), (Views{b, c}));
  EXPECT_EQ(a->layer()->superlayer(), b->layer().get());
  a->addSubview(parent); // into its own subtree: nothing happens
  a->addSubview(a);
  EXPECT_EQ(parent->superview(), window.get());
  EXPECT_TRUE(a->subviews().empty());
  a->layer()->addSublayer(parent->layer()); // nor with layers
  EXPECT_EQ(parent->layer()->superlayer(), window->layer().get());
  EXPECT_EQ(a->window(), window.get());
  parent->removeFromSuperview();
  EXPECT_EQ(a->window(), nullptr);
}

TEST_F(ViewTest, AutoresizingSharesTheChangeAmongTheFlexibleParts) {
  const auto parent = add({0, 0, 100, 100});
  const auto child = make<UIView>();
  parent->addSubview(child);
  struct Case {
    unsigned mask;
    CGRect after;
  };
  for (const auto& [mask, after] : {
           Case{AutoresizingNone, {10, 20, 30, 40}},
           Case{FlexibleWidth | FlexibleHeight, {10, 20, 90, 10}},
           Case{FlexibleLeftMargin | FlexibleTopMargin, {70, -10, 30, 40}},
           Case{FlexibleLeftMargin | FlexibleRightMargin, {40, 20, 30, 40}},
           Case{FlexibleLeftMargin | FlexibleWidth | FlexibleRightMargin, {30, 20, 50, 40}},
       }) {
    parent->setFrame({0, 0, 100, 100});
    child->setAutoresizingMask(mask);
    child->setFrame({10, 20, 30, 40});
    parent->setFrame({5, 5, 160, 70});
    EXPECT_EQ(child->frame(), after) << mask;
  }
  // A turned view keeps its own size.
  parent->setFrame({0, 0, 100, 100});
  child->setFrame({10, 20, 30, 40});
  child->setAutoresizingMask(FlexibleLeftMargin);
  child->setTransform(CGAffineTransform::rotation(std::numbers::pi / 4));
  parent->setFrame({0, 0, 120, 100});
  EXPECT_EQ(child->bounds().size(), (CGSize{30, 40}));
  EXPECT_EQ(child->center(), (CGPoint{45, 40}));
}

TEST_F(ViewTest, TouchFindsTheTopmostViewThatCanBeSeen) {
  const auto lower = add({0, 0, 100, 100});
  const auto upper = add({0, 0, 100, 100});
  EXPECT_EQ(hit(50, 50), upper.get());
  upper->setHidden(true);
  EXPECT_EQ(hit(50, 50), lower.get());
  upper->setHidden(false);
  upper->setAlpha(0.005);
  EXPECT_EQ(hit(50, 50), lower.get());
  upper->setAlpha(0.02);
  EXPECT_EQ(hit(50, 50), upper.get());
  upper->setUserInteractionEnabled(false);
  EXPECT_EQ(hit(50, 50), lower.get());
  upper->setUserInteractionEnabled(true);
  window->bringSubviewToFront(lower);
  EXPECT_EQ(hit(50, 50), lower.get());
  EXPECT_EQ(hit(99.9, 0), lower.get());
  EXPECT_EQ(hit(100, 0), window.get()); // the right edge is outside
  EXPECT_EQ(hit(400, 0), nullptr);
  // What sticks out of its superview, clipped or not, is not found there.
  const auto out = make<UIView>(CGRect{90, 0, 50, 50});
  lower->addSubview(out);
  EXPECT_EQ(hit(95, 10), out.get());
  EXPECT_EQ(hit(120, 10), window.get());
}

TEST_F(ViewTest, TouchFollowsTransforms) {
  const auto view = add({100, 100, 80, 20});
  view->setTransform(CGAffineTransform::rotation(std::numbers::pi / 2));
  EXPECT_EQ(hit(140, 80), view.get());
  EXPECT_EQ(hit(105, 110), window.get());
  view->setTransform(CGAffineTransform::scale(0, 0));
  EXPECT_EQ(hit(140, 110), window.get());
  view->setTransform({});
  UIView::animate(1, [&] { view->setCenter({250, 110}); });
  EXPECT_EQ(hit(250, 110), view.get()); // touches go by where it will be
  time.advance(2);
}

TEST_F(ViewTest, WindowsStackByLevelAndThenByTheMomentTheyWereShown) {
  const auto show = [&](double level) {
    auto made = watch("another window", make<UIWindow>());
    made->setWindowLevel(level);
    made->setVisible(true);
    return made;
  };
  auto alert = show(UIWindow::levelAlert);
  auto status = show(UIWindow::levelStatusBar);
  auto second = show(UIWindow::levelNormal);
  alert->setBackgroundColor({1, 0, 0, 1});
  status->setBackgroundColor({0, 1, 0, 1});
  second->setBackgroundColor({0, 0, 1, 1});
  EXPECT_EQ(hit(1, 1), alert.get());
  EXPECT_TRUE(screen().at(1, 1).isNear(red));
  alert->setVisible(false);
  EXPECT_EQ(hit(1, 1), status.get());
  EXPECT_TRUE(screen().at(1, 1).isNear(green));
  status->setWindowLevel(-1);
  EXPECT_EQ(hit(1, 1), second.get());
  EXPECT_TRUE(screen().at(1, 1).isNear(blue));
  second->makeKeyAndVisible();
  EXPECT_TRUE(second->isKeyWindow());
  second = nullptr; // a window that dies leaves the screen
  EXPECT_EQ(UIApplication::shared().keyWindow(), nullptr);
  EXPECT_EQ(hit(1, 1), window.get());
  EXPECT_TRUE(screen().at(1, 1).isNear(green)); // `window` is clear; the lowest shows
}

/// Marks itself at every layout.
struct Restless : UIView {
  int layouts = 0;
  void layoutSubviews() override {
    layouts++;
    setNeedsLayout();
  }
};

TEST_F(ViewTest, ViewThatMarksItselfAtEveryLayoutDoesNotHangTheProgram) {
  std::shared_ptr<UIView> parent = window;
  for (int depth = 0; depth < 30; depth++) {
    const auto child = make<UIView>();
    parent->addSubview(child);
    parent = child;
  }
  const auto restless = make<Restless>();
  parent->addSubview(restless);
  surface.drawFrame();
  time.settle();
  EXPECT_GE(restless->layouts, 1);
  EXPECT_LE(restless->layouts, 100);
  const int before = restless->layouts;
  time.advance(1); // nor keep it busy
  EXPECT_EQ(restless->layouts, before);
  restless->removeFromSuperview();
}

/// Marks a sibling while it is laid out.
struct Pusher : UIView {
  std::shared_ptr<UIView> other;
  void layoutSubviews() override { other->setNeedsLayout(); }
};
struct Counter : UIView {
  int layouts = 0;
  void layoutSubviews() override { layouts++; }
};

TEST_F(ViewTest, MarksMadeDuringALayoutAreServedByIt) {
  const auto counter = add<Counter>({0, 0, 10, 10});
  const auto pusher = add<Pusher>({0, 0, 10, 10});
  pusher->other = counter;
  time.settle();
  const int before = counter->layouts;
  pusher->setNeedsLayout();
  time.settle();
  EXPECT_EQ(counter->layouts, before + 1);
}

} // namespace
} // namespace zuvi::test
