// What people find who don't see the screen, or don't point at it.

#include <ZuviSDK/QuartzCore/AnimationCurve.h>
#include <ZuviSDK/UIKit/UIAlertController.h>
#include <ZuviSDK/UIKit/UIButton.h>
#include <ZuviSDK/UIKit/UIImage.h>
#include <ZuviSDK/UIKit/UIImageView.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include "platform/UIKit/UIScrollView.h"
#include "tests/UIKit/ControllerFixture.h"

namespace zuvi::test {
namespace {

class AccessibilityTest : public ControllerFixture {
protected:
  template <class View> std::shared_ptr<View> put(UIView& parent, const CGRect& frame) {
    auto view = watch("a view", make<View>());
    view->setFrame(frame);
    parent.addSubview(view);
    return view;
  }
  std::shared_ptr<UIButton> button(UIView& parent, const std::string& title, double y) {
    auto made = put<UIButton>(parent, {10, y, 100, 30});
    made->setTitle(title);
    return made;
  }
  /// The names in the order of reading, those of what something holds in brackets behind it.
  static std::string read() {
    UIScreen::main().layoutIfNeeded();
    std::string text;
    bool inside = false;
    for (const auto& item : UIAccessibility::items()) {
      if (inside && !item.parent) text += ") ";
      if (!inside && item.parent) text += "( ";
      inside = item.parent.has_value();
      text += item.element.name + " ";
    }
    return text + (inside ? ")" : "");
  }
  static std::string focused() {
    const UIView* view = UIApplication::shared().firstResponder();
    return view ? view->accessibilityElement().name : "";
  }
};

TEST_F(AccessibilityTest, NobodyIsToldOfWhatNobodySees) {
  const auto home = screenNamed("home");
  window->setRootViewController(home);
  UIView& page = *home->view();
  button(page, "first", 10);
  button(page, "hidden", 50)->setHidden(true);
  const auto late = button(page, "late", 130);
  late->setAlpha(0);
  UIView::animate(1, 2, {}, [&] { late->setAlpha(1); });
  const auto label = put<UILabel>(page, {10, 170, 100, 30});
  label->setText("told elsewhere");
  label->accessibilityElementsHidden = true;
  button(page, "covered", 210);
  put<UIView>(page, {0, 205, 200, 40});
  put<UIImageView>(page, {0, 250, 20, 20})->setImage(UIImage::fromCGImage(surface.picture(), 2));
  const auto scroller = put<UIScrollView>(page, {0, 300, 320, 50});
  scroller->setContentSize({320, 500});
  button(*scroller, "below", 400);
  EXPECT_EQ(read(), "first below ");
  press("Tab");
  press("Tab"); // passes over what is yet to fade in
  EXPECT_EQ(focused(), "below");
  EXPECT_EQ(scroller->contentOffset().y, 380) << "the focus is out of sight";
  time.advance(4);
  EXPECT_EQ(read(), "first late below ");

  const auto alert = watch("alert", make<UIAlertController>("Question", "Why?"));
  alert->addAction({"Answer", UIAlertAction::Style::Default, {}});
  alert->addAction({"Leave", UIAlertAction::Style::Cancel, {}});
  home->present(alert, true);
  finish();
  EXPECT_EQ(read(), "Question ( Question Why? Answer Leave )");
  EXPECT_EQ(focused(), "Answer");
  const auto hold = [](const char* name) { // a key that is down already, once more
    UIApplication::shared().keyPressed({name, {}, false, true});
  };
  hold("Escape"); // which was pressed for what lay below
  finish();
  EXPECT_EQ(home->presentedViewController(), alert);
  press("Escape");
  finish();
  EXPECT_EQ(focused(), "below") << "the focus has not come back";
  press("Tab");
  hold("Tab");
  EXPECT_EQ(focused(), "late");
}

TEST_F(AccessibilityTest, FocusIsNeverWhereItCannotBeSeen) {
  const auto home = screenNamed("home"), next = screenNamed("next");
  const auto root = stack(home);
  window->setRootViewController(root);
  const auto lost = button(*home->view(), "lost", 10);
  int taps = 0;
  lost->addTarget(UIControlEvent::TouchUpInside, [&] { taps++; });
  button(*next->view(), "other", 10);
  press("Tab");
  for (const bool isHeld : {false, true}) // which presses once
    UIApplication::shared().keyPressed({"space", {}, false, isHeld});
  lost->setAlpha(0);
  press("space");
  EXPECT_EQ(taps, 1) << "a key pressed what is not seen";
  EXPECT_EQ(focused(), "");
  lost->setAlpha(1);
  press("Tab");
  root->pushViewController(next, true);
  finish();
  EXPECT_EQ(focused(), "") << "a second press would do what nobody asked for";
  press("Tab");
  EXPECT_EQ(focused(), "other");
  EXPECT_TRUE(next->view()->subviews().front()->accessibilityActivate());
}

TEST_F(AccessibilityTest, TextFollowsThePersonsWish) {
  const auto shown = add<UILabel>({0, 0, 300, 40});
  shown->setText("A line of text");
  const double width = shown->intrinsicContentSize().width;
  surface.drawFrame();
  for (const double scale : {1.4, 0.2}) { // text is never smaller than it was made
    UIScreen::main().setTextScale(scale);
    EXPECT_NEAR(shown->intrinsicContentSize().width, std::max(scale, 1.0) * width, 2);
    EXPECT_TRUE(surface.drawFrame()) << "the old text is still to be seen";
  }
}

} // namespace
} // namespace zuvi::test
