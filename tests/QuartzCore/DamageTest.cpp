// A frame draws no more than what has changed, and no less.

#include "platform/QuartzCore/CAGradientLayer.h"
#include "platform/QuartzCore/CAShapeLayer.h"
#include "platform/UIKit/UIActivityIndicatorView.h"
#include "platform/UIKit/UILabel.h"
#include "platform/UIKit/UIScrollView.h"
#include "tests/UIKit/ScreenFixture.h"

#include <algorithm>
#include <random>

namespace zuvi::test {
namespace {

/// Forgets every kept node, so that the next picture is drawn from nothing.
void forgetNodes(CALayer& layer) {
  layer.setNeedsDisplay();
  for (const auto& sublayer : layer.sublayers())
    forgetNodes(*sublayer);
}

class DamageTest : public ScreenFixture {
protected:
  /// Empty when what the surface holds is what a drawing from nothing shows.
  std::string fault() {
    surface.drawFrame();
    const Pixels incremental(surface.picture());
    forgetNodes(UIScreen::main().rootLayer());
    return Pixels::difference(incremental, Pixels(pictureOfScreen()));
  }
  int framesIn(double seconds) {
    int drawn = 0;
    for (int i = 0; i < static_cast<int>(std::lround(seconds * 60)); i++) {
      time.advance(1.0 / 60);
      drawn += surface.drawFrame();
    }
    return drawn;
  }
};

TEST_F(DamageTest, NothingIsDrawnWhileNothingChanges) {
  const auto label = add<UILabel>({10, 10, 200, 30});
  label->setText("still");
  surface.drawFrame();
  EXPECT_EQ(framesIn(1), 0);
  label->setText("moved");
  EXPECT_EQ(framesIn(1), 1);
  label->setText("moved"); // no news
  EXPECT_EQ(framesIn(1), 0);
  UIView::animate(0.5, [&] { label->setAlpha(0.2); });
  const int moving = framesIn(0.5);
  EXPECT_GE(moving, 28);
  EXPECT_LE(framesIn(1), 2);
  EXPECT_EQ(framesIn(1), 0);
}

TEST_F(DamageTest, TurningLayerOutOfSightAsksForNoFrame) {
  const auto indicator = add<UIActivityIndicatorView>({10, 10, 36, 36});
  indicator->startAnimating();
  EXPECT_GE(framesIn(0.5), 29);
  for (const auto& conceal : std::vector<std::function<void(bool)>>{
           [&](bool away) { indicator->setHidden(away); },
           [&](bool away) { indicator->setAlpha(away ? 0 : 1); },
           [&](bool away) { indicator->layer()->sublayers()[0]->setHidden(away); },
           [&](bool away) { indicator->layer()->sublayers()[0]->setOpacity(away ? 0 : 1); }}) {
    conceal(true);
    surface.drawFrame();
    EXPECT_FALSE(surface.isFrameDue());
    EXPECT_EQ(framesIn(0.5), 0);
    conceal(false);
    EXPECT_GE(framesIn(0.5), 29) << "it stands still once it is back";
  }
  indicator->removeFromSuperview();
  surface.drawFrame();
  EXPECT_EQ(framesIn(0.5), 0);
  window->addSubview(indicator);
  EXPECT_GE(framesIn(0.5), 29);
  EXPECT_EQ(fault(), "");
}

TEST_F(DamageTest, FadeFromNothingBeginsByItself) {
  const auto view = add({10, 10, 100, 100}, UIColor::black());
  view->setAlpha(0);
  surface.drawFrame();
  UIView::animate(0.5, 0.2, {}, [&] { view->setAlpha(1); });
  framesIn(1);
  EXPECT_TRUE(screen().at(50, 50).isNear(black));
}

/// One random screen: layers of every kind, changed at random.
class RandomScreen {
public:
  RandomScreen(UIView& root, unsigned seed) : random_(seed) {
    for (int i = 0; i < 14; i++)
      addView(root);
  }

  void change() {
    UIView& view = *views_[below(views_.size())];
    CALayer& layer = *view.layer();
    switch (below(17)) {
    case 0:
      return view.setFrame(frame());
    case 1:
      return view.setHidden(!view.isHidden());
    case 2:
      return view.setAlpha(below(5) / 4.0);
    case 3:
      return view.setTransform(transform());
    case 4:
      return layer.setCornerRadius(below(30));
    case 5:
      return view.setClipsToBounds(!view.clipsToBounds());
    case 6:
      return layer.setBorderWidth(below(4));
    case 7:
      return view.setBackgroundColor(color());
    case 8: // into another view; never into one of its own
      return views_[below(views_.size())]->addSubview(view.shared_from_this());
    case 9:
      if (view.superview()) view.superview()->bringSubviewToFront(view.shared_from_this());
      return;
    case 10: // out, or in again
      if (view.superview())
        view.removeFromSuperview();
      else
        root_->addSubview(view.shared_from_this());
      return;
    case 11:
      if (auto* label = dynamic_cast<UILabel*>(&view))
        label->setText("Größe " + std::to_string(below(10000)));
      return;
    case 12:
      if (auto* scroller = dynamic_cast<UIScrollView*>(&view))
        scroller->setContentOffset({double(below(60)), double(below(60))});
      return;
    case 13:
      layer.setShadowOpacity(below(3) / 2.0);
      return layer.setShadowRadius(below(6));
    case 14:
      return UIView::animate(0.2, [&] {
        view.setFrame(frame());
        view.setAlpha(below(5) / 4.0);
      });
    case 15:
      return layer.setBounds(
          {double(below(20)), double(below(20)), view.bounds().width, view.bounds().height});
    default:
      return view.setCenter({coordinate(200), coordinate(200)});
    }
  }

private:
  void addView(UIView& root) {
    std::shared_ptr<UIView> view;
    switch (views_.size() % 4) {
    case 0: {
      const auto label = make<UILabel>();
      label->setText("Text");
      view = label;
      break;
    }
    case 1: {
      const auto scroller = make<UIScrollView>();
      scroller->setContentSize({300, 300});
      view = scroller;
      break;
    }
    default: {
      view = make<UIView>();
      const auto shape = std::make_shared<CAShapeLayer>();
      shape->setFrame({0, 0, 40, 40});
      shape->setPath(CGPath::ellipse({2, 2, 36, 30}));
      shape->setFillColor(color());
      view->layer()->addSublayer(shape);
    }
    }
    root_ = &root;
    view->setFrame(frame());
    view->setBackgroundColor(color());
    UIView& parent = views_.empty() || below(2) == 0 ? root : *views_[below(views_.size())];
    parent.addSubview(view);
    views_.push_back(view);
  }

  std::size_t below(std::size_t end) { return random_() % end; }
  double coordinate(std::size_t end) { return double(below(end * 4)) / 4; }
  CGRect frame() {
    return {coordinate(160) - 20, coordinate(160) - 20, coordinate(110), coordinate(110)};
  }
  UIColor color() {
    return {double(below(2)), double(below(2)), double(below(2)), below(2) == 0 ? 1.0 : 0.5};
  }
  CGAffineTransform transform() {
    switch (below(4)) {
    case 0:
      return CGAffineTransform::rotation(double(below(628)) / 100);
    case 1:
      return CGAffineTransform::scale(double(below(8)) / 4, double(below(8)) / 4);
    case 2:
      return CGAffineTransform::translation(coordinate(40), coordinate(40));
    default:
      return {};
    }
  }

  std::mt19937 random_;
  UIView* root_ = nullptr;
  std::vector<std::shared_ptr<UIView>> views_;
};

class RandomDamageTest : public testing::TestWithParam<double> {};

TEST_P(RandomDamageTest, FrameAfterAnyChangeEqualsADrawingFromNothing) {
  VirtualTime time;
  OffscreenSurface surface({160, 160}, GetParam());
  for (unsigned seed = 0; seed < 2; seed++) {
    auto window = make<UIWindow>();
    window->makeKeyAndVisible();
    RandomScreen views(*window, seed);
    for (int step = 0; step < 120; step++) {
      for (unsigned i = 0; i <= unsigned(step) % 3; i++)
        views.change();
      time.advance(0.05);
      surface.drawFrame();
      const Pixels incremental(surface.picture());
      const Pixels whole(pictureOfScreen());
      // The toolkit's soft edges and shadows depend a little on the area that is drawn.
      ASSERT_EQ(Pixels::difference(incremental, whole, 16), "")
          << "damage missed, seed " << seed << ", step " << step;
      if (step % 4 != 0) continue;
      forgetNodes(UIScreen::main().rootLayer());
      ASSERT_EQ(Pixels::difference(whole, Pixels(pictureOfScreen())), "")
          << "a stale node, seed " << seed << ", step " << step;
    }
    time.advance(1);
  }
}

INSTANTIATE_TEST_SUITE_P(Scales, RandomDamageTest, testing::Values(1.0, 2.0, 1.5));

} // namespace
} // namespace zuvi::test
