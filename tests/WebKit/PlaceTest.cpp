#include "testing/WebKit/WebFixtureGtk.h"

namespace zuvi::test {

namespace {

class PlaceTest : public WebTest {
protected:
  PlaceTest() {
    serve("/red", "<body style='background:#f00'></body>");
    serve("/clear", "<body style='background:transparent'></body>");
    serve("/count", R"(<body style='background:#f00'><script>
      window.ticks = 0;
      setInterval(() => ticks++, 20)</script></body>)");
  }

  std::shared_ptr<UIView> add(UIView& onto, const CGRect& frame, const UIColor& color) {
    auto view = make<UIView>(frame);
    view->setBackgroundColor(color);
    onto.addSubview(view);
    return view;
  }

  ::testing::AssertionResult becomes(double x, double y, const Pixel& wanted) {
    if (waitFor([&] { return screen().at(x, y).isNear(wanted, 4); }, 5))
      return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << screen().at(x, y) << " where " << wanted << " belongs";
  }
};

TEST_F(PlaceTest, DrawsThePageAmongTheLayers) {
  add(*window, {0, 0, 360, 640}, UIColor::bytes(0, 0, 255));
  const auto box = add(*window, {100, 100, 100, 200}, UIColor::bytes(0, 255, 0));
  box->setClipsToBounds(true);
  const auto view = makeWebView();
  box->addSubview(view);
  view->setFrame({20, 20, 100, 100}); // the last 20 points are cut off
  const auto over = add(*view, {0, 0, 30, 30}, UIColor::bytes(0, 0, 0));
  ASSERT_TRUE(show(*view, "/red"));
  EXPECT_TRUE(becomes(160, 160, red));
  EXPECT_TRUE(becomes(199, 219, red));
  EXPECT_TRUE(becomes(201, 160, blue));
  EXPECT_TRUE(becomes(160, 221, green));
  EXPECT_TRUE(becomes(119, 160, green));
  EXPECT_TRUE(becomes(130, 130, black));

  view->setAlpha(0.5);
  EXPECT_TRUE(becomes(160, 160, {128, 128, 0}));
  view->setTransform(CGAffineTransform::scale(0.5, 0.5));
  EXPECT_TRUE(becomes(150, 160, {128, 128, 0}));
  EXPECT_TRUE(becomes(142, 160, green));
  view->setTransform({});
  view->setAlpha(1);
  add(*box, {0, 0, 100, 200}, UIColor::bytes(255, 255, 255));
  EXPECT_TRUE(becomes(160, 160, white));
}

TEST_F(PlaceTest, ShowsTheBackgroundThroughAPageThatIsNotOpaque) {
  const auto view = makeWebView();
  view->setOpaque(false);
  view->setBackgroundColor(UIColor::bytes(0, 255, 0));
  ASSERT_TRUE(show(*view, "/clear"));
  EXPECT_TRUE(becomes(300, 600, green));
  evaluate(
      *view,
      "document.body.innerHTML='<div id=d "
      "style=\"position:absolute;left:250px;top:550px;width:100px;height:80px;background:#f00\">'");
  EXPECT_TRUE(becomes(300, 600, red));
  evaluate(*view, "d.style.left='10px'");
  EXPECT_TRUE(becomes(300, 600, green));
  EXPECT_TRUE(becomes(50, 600, red));
  view->setOpaque(true);
  EXPECT_TRUE(becomes(300, 600, white));
}

TEST_F(PlaceTest, LivesOnInAHiddenWindowAndMovesWithoutALoad) {
  const auto view = makeWebView();
  ASSERT_TRUE(show(*view, "/count"));
  const auto other = make<UIWindow>();
  other->setBackgroundColor(UIColor::bytes(0, 0, 255));
  other->addSubview(view);
  window->addSubview(view);
  EXPECT_TRUE(becomes(300, 600, red));
  other->addSubview(view);
  runFor(0.2);
  const double before = *evaluate(*view, "ticks").number();
  runFor(1);
  EXPECT_GT(*evaluate(*view, "ticks").number(), before + 20);
  // There at once when the window is shown, though the page needs a moment to draw itself.
  other->setVisible(true);
  int blank = 0;
  for (int i = 0; i < 30; i++) {
    runFor(0.01);
    blank += !screen().at(300, 600).isNear(red);
  }
  EXPECT_LE(blank, 2);
  EXPECT_EQ(requestsFor("/count"), 1);
  view->removeFromSuperview();
}

TEST_F(PlaceTest, TakesAPictureOfThePage) {
  const auto view = makeWebView();
  EXPECT_FALSE(view->drawHierarchy({100, 50}));
  ASSERT_TRUE(show(*view, "/red"));
  ASSERT_TRUE(becomes(300, 600, red));
  const auto picture = view->drawHierarchy({100, 50});
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->size(), (CGSize{100, 50}));
  const Pixels pixels(picture->pixels(picture->size(), 1), UIScreen::main().scale());
  EXPECT_TRUE(pixels.at(99, 49).isNear(red));
  view->removeFromSuperview();
  runFor(0.1);
  ASSERT_TRUE(view->drawHierarchy({10, 10})); // the last one
}

} // namespace

} // namespace zuvi::test
