// How the page makes room for the keyboard, in numbers.

#include <ZuviSDK/UIKit/UIImageView.h>
#include "kit/Helper/LiveChat/WebViewAnimationCoordinator.h"
#include "platform/QuartzCore/CAAnimation.h"
#include "tests/chat/ChatTest.h"

namespace zuvi::test {
namespace {

Value rect(double x, double y, double width, double height) {
  return Value::Dictionary{{"x", x}, {"y", y}, {"width", width}, {"height", height}};
}

Notification keyboard(double from, double to, const Value& duration = 0.5) {
  return {UIKeyboardWillShowNotification,
          {{UIKeyboardFrameBeginUserInfoKey, rect(0, from, 375, 300)},
           {UIKeyboardFrameEndUserInfoKey, rect(0, to, 375, 300)},
           {UIKeyboardAnimationDurationUserInfoKey, duration},
           {UIKeyboardAnimationCurveUserInfoKey, 7}}};
}

class KeyboardTest : public ChatTest {
protected:
  KeyboardTest() {
    window->makeKeyAndVisible();
    window->addSubview(super);
    super->addSubview(web);
    web->load(URLRequest(URL::fromString("https://chat.host/").value()));
    page()->image = UIImage::fromCGImage(surface.picture());
  }
  void TearDown() override {
    window->setVisible(false);
    ChatTest::TearDown();
  }
  void coordinate(const Notification& notification) {
    WebViewAnimationCoordinator().coordinateAnimation(
        web, super, KeyboardNotification(notification),
        [this](bool finished) { ends.push_back(finished); });
  }
  std::shared_ptr<UIView> mask() const {
    return super->subviews().size() > 1 ? super->subviews().back() : nullptr;
  }
  /// The transform that the page starts from.
  CGAffineTransform start() const {
    const LayerValue v = web->layer()->presented(LayerProperty::Transform);
    return {v[0], v[1], v[2], v[3], v[4], v[5]};
  }

  std::shared_ptr<UIWindow> window = make<UIWindow>();
  // Ends 12 points above the screen's end; the page leaves 44 points free at its top.
  std::shared_ptr<UIView> super = make<UIView>(CGRect{0, 100, 375, 700});
  std::shared_ptr<WKWebView> web =
      make<WKWebView>(CGRect{0, 44, 375, 600}, WKWebViewConfiguration());
  std::vector<bool> ends;
};

TEST_F(KeyboardTest, APictureCarriesTheEyeToTheNewFrame) {
  // Comes: covers nothing before, 288 points of the view after (800 - 512).
  coordinate(keyboard(812, 512));
  EXPECT_THAT(page()->pictured, ElementsAre(CGSize{375, 600}));
  ASSERT_TRUE(mask());
  EXPECT_EQ(mask()->frame(), (CGRect{0, 44, 375, 312}));
  EXPECT_EQ(mask()->layer()->presented(LayerProperty::Bounds)[3], 600) << "from the old frame";
  const double grown = 600.0 / 312;
  EXPECT_NEAR(start().d, grown, 1e-9);
  EXPECT_NEAR(start().ty, 288 * grown / 2, 1e-9);
  EXPECT_EQ(web->frame(), (CGRect{0, 44, 375, 600})) << "written and written back";
  time.advance(0.55);
  EXPECT_FALSE(mask());
  EXPECT_THAT(ends, ElementsAre(true));

  coordinate(keyboard(512, 900)); // goes
  EXPECT_EQ(mask()->frame(), (CGRect{0, 44, 375, 600})) << "what lies below covers nothing";
  EXPECT_NEAR(start().d, 312.0 / 600, 1e-9);
  time.advance(0.1);
  coordinate(keyboard(900, 512, "half")); // cuts the other short
  EXPECT_NEAR(start().d, grown, 1e-9);
  time.advance(0.3);
  EXPECT_THAT(ends, ElementsAre(true, true)) << "0.25 seconds without a word of it";
  time.advance(0.2); // the picture of the one that was cut short goes when its time is over
  EXPECT_THAT(ends, ElementsAre(true, true, false));
  EXPECT_FALSE(mask());
}

TEST_F(KeyboardTest, NothingMovesWhereThereIsNothingToShow) {
  coordinate(keyboard(812, 100)); // as tall as the page: there is no scale to nothing
  EXPECT_THAT(ends, ElementsAre(true));
  EXPECT_FALSE(mask());
  EXPECT_TRUE(start().isIdentity());
  EXPECT_EQ(web->frame(), (CGRect{0, 44, 375, 600}));
  coordinate(keyboard(100, 812)); // and back: there was nothing to be seen
  page()->image = nullptr;
  coordinate(keyboard(812, 512));
  EXPECT_EQ(ends.size(), 1U);
  EXPECT_FALSE(mask() || web->layer()->hasAnimations());
}

} // namespace
} // namespace zuvi::test
