// Roots of windows, stacks and tabs: which screen hears what, in which order.

#include "platform/UIKit/UITabBarController.h"
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
  EXPECT_EQ(take(), "a* a+ a+!");
  window->setRootViewController(a);
  EXPECT_EQ(take(), "");
  window->setRootViewController(b);
  EXPECT_EQ(take(), "a- a-! b* b+ b+!");
  EXPECT_EQ(a->view()->superview(), nullptr);
  window->setVisible(false);
  EXPECT_EQ(take(), "b- b-!");
  window->setRootViewController(a);
  EXPECT_EQ(take(), "");
  window->setVisible(true);
  EXPECT_EQ(take(), "a+ a+!");
  window->setRootViewController(nullptr);
  EXPECT_EQ(take(), "a- a-!");
}

TEST_F(StackTest, PushAndPopInOrder) {
  const auto nav = shownStack();
  nav->pushViewController(screenNamed("b", bluePaint), false);
  EXPECT_EQ(take(), "a- b+ a-! b+!");
  EXPECT_TRUE(middle().isNear(blue));
  EXPECT_EQ(nav->popViewController(false)->view()->superview(), nullptr);
  EXPECT_EQ(take(), "b- a+ b-! a+!");
  EXPECT_EQ(nav->popViewController(false), nullptr);
  EXPECT_EQ(take(), "");

  const auto c = screenNamed("c", bluePaint);
  nav->pushViewController(c, true);
  EXPECT_EQ(take(), "a-~ c+~");
  EXPECT_EQ(c->navigationController(), nav.get());
  time.advance(0.1);
  EXPECT_EQ(take(), "");
  const Pixels seen = screen(); // one slides over the other
  EXPECT_GT(seen.count(red), 0);
  EXPECT_GT(seen.count(blue), 0);
  EXPECT_EQ(finish(), "a-!~ c+!~");
  EXPECT_TRUE(middle().isNear(blue));
  EXPECT_EQ(screen().count(red), 0);
  nav->popViewController(true);
  EXPECT_EQ(take(), "c-~ a+~");
  EXPECT_EQ(finish(), "c-!~ a+!~");
  EXPECT_EQ(c.use_count(), 1);
  EXPECT_TRUE(middle().isNear(red));
}

TEST_F(StackTest, RewrittenStackShowsANewTopAndLeavesTheSameOneInPeace) {
  const auto nav = shownStack();
  nav->pushViewController(screenNamed("b"), false);
  nav->pushViewController(screenNamed("c"), false);
  take();
  const auto& all = nav->viewControllers();
  const auto a = all[0], b = all[1], c = all[2];
  nav->setViewControllers({a, c}, true);
  EXPECT_EQ(finish(), "");
  EXPECT_EQ(b->parent(), nullptr);
  nav->popViewController(true);
  EXPECT_EQ(finish(), "c-~ a+~ c-!~ a+!~");
  nav->setViewControllers({b, nullptr, c}, false); // as if pushed
  EXPECT_EQ(take(), "a- c+ a-! c+!");
  nav->setViewControllers({}, false);
  EXPECT_EQ(nav->viewControllers().size(), 2U);
  nav->setViewControllers({b}, true); // as if popped to
  EXPECT_EQ(finish(), "c-~ b+~ c-!~ b+!~");
  nav->pushViewController(b, true); // is there already
  EXPECT_EQ(finish(), "");
}

TEST_F(StackTest, ChangeDuringAMovementEndsThatMovementFirst) {
  const auto nav = shownStack();
  nav->pushViewController(screenNamed("b"), true);
  time.advance(0.1);
  nav->pushViewController(screenNamed("c", bluePaint), true);
  EXPECT_EQ(take(), "a-~ b+~ a-!~ b+!~ b-~ c+~");
  EXPECT_TRUE(UIApplication::shared().isIgnoringInteractionEvents());
  EXPECT_EQ(finish(), "b-!~ c+!~");
  nav->pushViewController(screenNamed("d"), true);
  time.advance(0.1);
  nav->popViewController(true);
  EXPECT_EQ(take(), "c-~ d+~ c-!~ d+!~ d-~ c+~");
  EXPECT_EQ(finish(), "d-!~ c+!~");
  EXPECT_TRUE(middle().isNear(blue));
  // One that answers its own appearance with the next push.
  const auto e = screenNamed("e");
  e->onDidAppear = [this, &nav] { nav->pushViewController(screenNamed("f", greenPaint), true); };
  nav->pushViewController(e, true);
  EXPECT_EQ(finish(), "c-~ e+~ c-!~ e+!~ e-~ f+~ e-!~ f+!~");
  EXPECT_TRUE(middle().isNear(green));
}

TEST_F(StackTest, StackOffTheWindowChangesWithoutAppearanceCalls) {
  const auto nav = stack(screenNamed("a"));
  nav->pushViewController(screenNamed("b", bluePaint), true);
  EXPECT_EQ(finish(), "");
  window->setRootViewController(nav);
  EXPECT_EQ(take(), "b+ b+!");
  EXPECT_TRUE(middle().isNear(blue));
  window->setRootViewController(nullptr);
  take();
  nav->popViewController(true);
  EXPECT_EQ(finish(), "");
  window->setRootViewController(nav);
  EXPECT_EQ(take(), "a+ a+!");
  // A movement under way when the stack goes away ends first.
  nav->pushViewController(screenNamed("c"), true);
  window->setRootViewController(nullptr);
  EXPECT_EQ(take(), "a-~ c+~ a-!~ c+!~ c- c-!");
  EXPECT_EQ(finish(), "");
}

TEST_F(StackTest, TouchesAreHeardAgainAfterTheMovement) {
  const auto nav = shownStack();
  auto& app = UIApplication::shared();
  nav->pushViewController(screenNamed("b"), true);
  EXPECT_TRUE(app.isIgnoringInteractionEvents());
  nav->popViewController(false);
  EXPECT_FALSE(app.isIgnoringInteractionEvents());
  nav->pushViewController(screenNamed("c"), true);
  window->setRootViewController(screenNamed("d")); // the stack dies on the way
  EXPECT_FALSE(app.isIgnoringInteractionEvents());
  time.advance(1);
}

TEST_F(StackTest, TabsAppearWhenTheyAreChosen) {
  const auto a = screenNamed("a", redPaint), b = screenNamed("b", bluePaint);
  const auto tabs = watch("tabs", make<UITabBarController>(std::vector<UITabBarController::Tab>{
                                      {"A", a}, {"none", nullptr}, {"B", b}}));
  window->setRootViewController(tabs);
  EXPECT_EQ(take(), "a+ a+!");
  tap({240, 450}); // the second of two, above the safe area
  EXPECT_EQ(take(), "a- b+ a-! b+!");
  EXPECT_EQ(tabs->selectedIndex(), 1U);
  EXPECT_TRUE(middle().isNear(blue));
  EXPECT_EQ(b->tabBarController(), tabs.get());
  tabs->setSelectedIndex(1);
  tabs->setSelectedIndex(9);
  EXPECT_EQ(take(), "");
  window->setVisible(false);
  EXPECT_EQ(take(), "b- b-!");
  tabs->setSelectedIndex(0);
  EXPECT_EQ(take(), "");
  window->setVisible(true);
  EXPECT_EQ(take(), "a+ a+!");
  window->setRootViewController(nullptr);
  take();
  // Chosen while the bar itself is on its way in.
  const auto root = screenNamed("r");
  window->setRootViewController(root);
  take();
  root->present(tabs, true);
  tabs->setSelectedIndex(1);
  EXPECT_EQ(finish(), "r-~ a+~ a- b+ a-! b+! r-!~");
}

} // namespace
} // namespace zuvi::test
