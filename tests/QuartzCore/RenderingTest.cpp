// The pixels that layers leave on the screen.

#include "platform/QuartzCore/CAGradientLayer.h"
#include "platform/QuartzCore/CAShapeLayer.h"
#include "tests/UIKit/ScreenFixture.h"

#include <numbers>

namespace zuvi::test {
namespace {

constexpr CGColor redColor{1, 0, 0, 1}, greenColor{0, 1, 0, 1}, blueColor{0, 0, 1, 1};

class RenderingTest : public ScreenFixture {
protected:
  template <class Layer = CALayer>
  std::shared_ptr<Layer> addLayer(const CGRect& frame, const CGColor& color = CGColor::clear()) {
    auto layer = watch("a layer", std::make_shared<Layer>());
    layer->setFrame(frame);
    layer->setBackgroundColor(color);
    window->layer()->addSublayer(layer);
    return layer;
  }
  Pixel at(double x, double y) { return screen().at(x, y); }
};

#define EXPECT_PIXEL(x, y, wanted)                                                                 \
  EXPECT_TRUE(at(x, y).isNear(wanted)) << "at " << (x) << ", " << (y) << " stands " << at(x, y)

TEST_F(RenderingTest, BackgroundBorderAndOrder) {
  const auto lower = addLayer({10, 10, 40, 40}, redColor);
  const auto upper = addLayer({30, 10, 40, 40}, blueColor);
  lower->setBorderWidth(4);
  lower->setBorderColor(greenColor);
  EXPECT_PIXEL(5, 30, white);
  EXPECT_PIXEL(11, 30, green);
  EXPECT_PIXEL(13.5, 30, green);
  EXPECT_PIXEL(15, 30, red);
  EXPECT_PIXEL(40, 30, blue);
  window->layer()->addSublayer(lower);
  EXPECT_PIXEL(40, 30, red);
  EXPECT_PIXEL(60, 30, blue);
  // The border stands above what the layer holds.
  const auto inner = std::make_shared<CALayer>();
  inner->setFrame({0, 0, 40, 40});
  inner->setBackgroundColor(CGColor::black());
  lower->addSublayer(inner);
  EXPECT_PIXEL(11, 30, green);
  EXPECT_PIXEL(25, 30, black);
  EXPECT_EQ(window->layer()->sublayers().back(), lower);
  EXPECT_EQ(upper->superlayer(), window->layer().get());
}

TEST_F(RenderingTest, CornersAndClip) {
  const auto layer = addLayer({10, 10, 40, 40}, redColor);
  layer->setCornerRadius(20);
  const auto inner = std::make_shared<CALayer>();
  inner->setFrame({-10, -10, 30, 60});
  inner->setBackgroundColor(blueColor);
  layer->addSublayer(inner);
  EXPECT_PIXEL(48, 12, white); // off the round corner
  EXPECT_PIXEL(45, 30, red);
  EXPECT_PIXEL(5, 5, blue); // sticks out
  layer->setMasksToBounds(true);
  EXPECT_PIXEL(5, 5, white);
  EXPECT_PIXEL(12, 12, white); // the round corner cuts it too
  EXPECT_PIXEL(15, 30, blue);
  layer->setCornerRadius(0);
  EXPECT_PIXEL(12, 12, blue);
  layer->setMasksToBounds(false);
  EXPECT_PIXEL(5, 5, blue);
}

TEST_F(RenderingTest, OpacityCoversTheWholeSubtreeAsOne) {
  const auto layer = addLayer({10, 10, 40, 40}, redColor);
  const auto inner = std::make_shared<CALayer>();
  inner->setFrame({0, 0, 20, 40});
  inner->setBackgroundColor(blueColor);
  layer->addSublayer(inner);
  layer->setOpacity(0.5);
  EXPECT_PIXEL(40, 30, (Pixel{255, 128, 128}));
  EXPECT_PIXEL(20, 30, (Pixel{128, 128, 255})); // no red shines through
  layer->setHidden(true);
  EXPECT_PIXEL(20, 30, white);
  layer->setHidden(false);
  layer->setOpacity(0);
  EXPECT_PIXEL(20, 30, white);
}

TEST_F(RenderingTest, TransformsKeepTheirPlaceAndNeverShowTheToolkitsError) {
  const auto layer = addLayer({100, 100, 80, 20}, redColor);
  const auto rotated = CGAffineTransform::rotation(std::numbers::pi / 2);
  struct Case {
    CGAffineTransform transform;
    CGPoint inside, outside;
  };
  const Case cases[] = {
      {rotated, {140, 80}, {110, 110}},
      {CGAffineTransform::rotation(std::numbers::pi / 4), {115, 85}, {110, 110}},
      {CGAffineTransform::scale(0.5, 3), {140, 85}, {110, 110}},
      {CGAffineTransform::scale(-1, 1), {110, 110}, {90, 110}},
      {{1, 0, 1, 1, 0, 0}, {182, 118}, {105, 118}}, // leaning
      {rotated.concatenating(CGAffineTransform::scale(1, 0.5)), {140, 95}, {140, 80}},
      {CGAffineTransform::translation(50, 0), {220, 110}, {140, 110}},
  };
  for (const Case& each : cases) {
    layer->setTransform(each.transform);
    const Pixels seen = screen();
    const std::ptrdiff_t index = &each - cases;
    EXPECT_TRUE(seen.at(each.inside.x, each.inside.y).isNear(red))
        << index << ": " << seen.at(each.inside.x, each.inside.y);
    EXPECT_TRUE(seen.at(each.outside.x, each.outside.y).isNear(white)) << index;
    EXPECT_EQ(seen.count({255, 192, 203}, 6), 0) << index << ": an error is drawn";
  }
  for (const auto& flat : {CGAffineTransform::scale(0, 0), CGAffineTransform::scale(0, 1),
                           CGAffineTransform::scale(1e-9, 1)}) {
    layer->setTransform(flat);
    const Pixels seen = screen();
    EXPECT_EQ(seen.count({255, 192, 203}, 6), 0) << "an error is drawn";
    EXPECT_EQ(seen.count(red), 0);
  }
}

TEST_F(RenderingTest, ShadowFallsWhereItIsSent) {
  const auto layer = addLayer({50, 50, 60, 60}, redColor);
  layer->setShadowOpacity(1);
  layer->setShadowOffset({0, 20});
  layer->setShadowRadius(4);
  EXPECT_LT(at(80, 120).red, 60);
  EXPECT_PIXEL(80, 40, white);
  EXPECT_PIXEL(80, 80, red);
  layer->setShadowPath(CALayer::RoundedRect{{0, 0, 20, 60}, 0});
  EXPECT_LT(at(60, 120).red, 60);
  EXPECT_PIXEL(100, 125, white);
  layer->setShadowOpacity(0);
  EXPECT_PIXEL(60, 120, white);
}

TEST_F(RenderingTest, GradientAndShape) {
  const auto gradient = addLayer<CAGradientLayer>({10, 10, 40, 100});
  gradient->setColors({redColor, greenColor, blueColor});
  EXPECT_TRUE(at(30, 10.5).isNear(red, 12)) << at(30, 10.5);
  EXPECT_TRUE(at(30, 60).isNear(green, 12)) << at(30, 60);
  EXPECT_TRUE(at(30, 109.5).isNear(blue, 12)) << at(30, 109.5);
  const auto shape = addLayer<CAShapeLayer>({100, 10, 60, 60});
  shape->setPath(CGPath::ellipse({10, 10, 40, 40}));
  shape->setFillColor(redColor);
  shape->setStrokeColor(blueColor);
  shape->setLineWidth(4);
  EXPECT_PIXEL(130, 40, red);
  EXPECT_PIXEL(110.5, 40, blue);
  EXPECT_PIXEL(109, 40, blue);
  EXPECT_PIXEL(112, 22, white);
  EXPECT_PIXEL(101, 40, white);
}

TEST_F(RenderingTest, ContentsFillTheLayerByTheirGravity) {
  std::string halves; // red on the left, blue on the right
  for (int i = 0; i < 40 * 20; i++)
    halves += std::string(i % 40 < 20 ? "\0\0\xff\xff" : "\xff\0\0\xff", 4);
  const auto image = CGImage::fromPixels(Data(halves), 40, 20, 160, CGImage::Format::BGRA);
  const auto layer = addLayer({100, 100, 40, 40}, CGColor::black());
  layer->setContents(image);
  EXPECT_PIXEL(102, 102, red);
  EXPECT_PIXEL(138, 138, blue);
  layer->setContentsGravity(ContentsGravity::ResizeAspect); // 40 by 20 in the middle
  EXPECT_PIXEL(102, 105, black);
  EXPECT_PIXEL(102, 120, red);
  layer->setContentsGravity(ContentsGravity::ResizeAspectFill); // 80 by 40, cut at the edges
  EXPECT_PIXEL(102, 105, red);
  EXPECT_PIXEL(95, 105, white);
  layer->setContentsGravity(ContentsGravity::Center); // 20 by 10: a pixel for a pixel
  EXPECT_PIXEL(108, 120, black);
  EXPECT_PIXEL(112, 120, red);
  EXPECT_PIXEL(128, 120, blue);
  EXPECT_PIXEL(132, 120, black);
  layer->setContents(nullptr);
  EXPECT_PIXEL(112, 120, black);
}

} // namespace
} // namespace zuvi::test
