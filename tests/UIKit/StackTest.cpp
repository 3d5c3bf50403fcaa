// Roots of windows, stacks and tabs: which screen hears what, in which order.

#include <ZuviSDK/UIKit/UITabBarController.h>
#include "tests/UIKit/ControllerFixture.h"

namespace zuvi::test {
namespace {

class StackTest : public ControllerFixture {
protected:
  /// A stack on the window whose root "a" has appeared.
  std::shared_ptr<UINavigationController> shownStack() {
    const auto made = stack(screenNamed("a", redPaint));
    window->setRootViewController(made);
    log.clear();
    return made;
  }
};

TEST_F(StackTest, RootOfAWindowAppearsWithIt) {
  const auto a = watch("a", make<Screen>("a", log)), b = watch("b", make<Screen>("b", log));
  window->setRootViewController(a);
  window->setRootViewController(b);
  window->setVisible(false);
  window->setVisible(true);
  window->setRootViewController(nullptr);
  EXPECT_EQ(take(), "a* a+ a+! a- a-! b* b+ b+! b- b-! b+ b+! b- b-!");
}

TEST_F(StackTest, PushAndPopInOrder) {
  const auto nav = shownStack();
  nav->pushViewController(screenNamed("b", bluePaint), false);
  EXPECT_EQ(nav->popViewController(false)->view()->superview(), nullptr);
  EXPECT_EQ(take(), "a- b+ a-! b+! b- a+ b-! a+!");
  const auto c = screenNamed("c", bluePaint);
  nav->pushViewController(c, true);
  EXPECT_EQ(take(), "a-~ c+~");
  time.advance(0.1);
  const Pixels seen = screen(); // one slides over the other
  EXPECT_TRUE(seen.count(red) > 0 && seen.count(blue) > 0);
  UIScreen::main().configure({400, 600}, 2, {}); // in the middle of the movement
  EXPECT_EQ(finish(), "a-!~ c+!~");
  EXPECT_EQ(c->view()->frame(), (CGRect{0, 0, 400, 600}));
  EXPECT_TRUE(middle().isNear(blue));
  nav->popViewController(true);
  EXPECT_EQ(take(), "c-~ a+~");
  EXPECT_EQ(finish(), "c-!~ a+!~");
  EXPECT_EQ(c.use_count(), 1);
  EXPECT_TRUE(middle().isNear(red));
}

TEST_F(StackTest, ChangeDuringAMovementEndsThatMovementFirst) {
  const auto nav = shownStack();
  nav->pushViewController(screenNamed("b"), true);
  time.advance(0.1);
  nav->pushViewController(screenNamed("c", bluePaint), true);
  EXPECT_EQ(take(), "a-~ b+~ a-!~ b+!~ b-~ c+~");
  time.advance(0.1);
  nav->popViewController(true);
  EXPECT_EQ(finish(), "b-!~ c+!~ c-~ b+~ c-!~ b+!~");
  // One that answers its own appearance with the next push.
  const auto e = screenNamed("e");
  e->onDidAppear = [this, &nav] { nav->pushViewController(screenNamed("f", greenPaint), true); };
  nav->pushViewController(e, true);
  EXPECT_EQ(finish(), "b-~ e+~ b-!~ e+!~ e-~ f+~ e-!~ f+!~");
  EXPECT_TRUE(middle().isNear(green));
}

TEST_F(StackTest, TabsAppearWhenTheyAreChosen) {
  const auto a = screenNamed("a", redPaint), b = screenNamed("b", bluePaint);
  const auto tabs = watch("tabs", make<UITabBarController>(std::vector<UITabBarController::Tab>{
                                      {"A", a}, {"none", nullptr}, {"B", b}}));
  window->setRootViewController(tabs);
  tap({240, 450}); // the second of two, above the safe area
  tabs->setSelectedIndex(9);
  EXPECT_EQ(take(), "a+ a+! a- b+ a-! b+!");
  EXPECT_TRUE(middle().isNear(blue));
}

} // namespace
} // namespace zuvi::test
