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
  std::shared_ptr<CALayer> addLayer(const CGRect& frame, const CGColor& color) {
    auto layer = watch("a layer", std::make_shared<CALayer>());
    layer->setFrame(frame);
    layer->setBackgroundColor(color);
    window->layer()->addSublayer(layer);
    return layer;
  }
  Pixel at(double x, double y) { return screen().at(x, y); }
};

#define EXPECT_PIXEL(x, y, wanted)                                                                 \
  EXPECT_TRUE(at(x, y).isNear(wanted)) << "at " << (x) << ", " << (y) << " stands " << at(x, y)

TEST_F(RenderingTest, CornersAndClip) {
  const auto layer = addLayer({10, 10, 40, 40}, redColor);
  layer->setCornerRadius(20);
  layer->setBorderWidth(2);
  layer->setBorderColor(greenColor);
  const auto inner = std::make_shared<CALayer>();
  inner->setFrame({-10, -10, 30, 60});
  inner->setBackgroundColor(blueColor);
  layer->addSublayer(inner);
  EXPECT_PIXEL(48, 12, white); // off the round corner
  EXPECT_PIXEL(49, 30, green);
  EXPECT_PIXEL(5, 5, blue); // sticks out
  layer->setMasksToBounds(true);
  EXPECT_PIXEL(5, 5, white);
  EXPECT_PIXEL(12, 12, white); // the round corner cuts it too
  EXPECT_PIXEL(15, 30, blue);
}

TEST_F(RenderingTest, GradientRunsDownAndShadowFallsWhereItIsSent) {
  const auto layer = addLayer({10, 10, 40, 40}, redColor);
  layer->setShadowOpacity(1);
  layer->setShadowRadius(0);
  layer->setShadowOffset({20, 0});
  const auto gradient = std::make_shared<CAGradientLayer>();
  gradient->setFrame({0, 0, 40, 40});
  gradient->setColors({redColor, blueColor});
  layer->addSublayer(gradient);
  EXPECT_TRUE(at(30, 30).isNear({128, 0, 128}, 8)) << at(30, 30);
  EXPECT_TRUE(at(30, 12).isNear(red, 20)) << at(30, 12);
  EXPECT_PIXEL(60, 30, black);
  EXPECT_PIXEL(80, 30, white);
}

TEST_F(RenderingTest, MirrorTurnsThePictureAndNothingElse) {
  const auto layer = addLayer({10, 10, 40, 40}, greenColor);
  const Data pixels(std::string("\x00\x00\xff\xff\xff\x00\x00\xff", 8)); // red, blue
  layer->setContents(CGImage::fromPixels(pixels, 2, 1, 8, CGImage::Format::BGRA));
  layer->setContentsGravity(ContentsGravity::ResizeAspect); // green above and below
  const auto inner = std::make_shared<CALayer>();
  inner->setFrame({0, 0, 5, 5});
  inner->setBackgroundColor(redColor);
  layer->addSublayer(inner);
  for (const bool mirrored : {false, true, false}) {
    layer->setContentsMirrored(mirrored);
    EXPECT_PIXEL(12, 30, mirrored ? blue : red);
    EXPECT_PIXEL(48, 30, mirrored ? red : blue);
    EXPECT_PIXEL(12, 12, red);
    EXPECT_PIXEL(48, 48, green);
  }
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
}

TEST_F(RenderingTest, ShapesAreFilledByTheirRule) {
  const auto shape = watch("a shape", std::make_shared<CAShapeLayer>());
  shape->setFrame({10, 10, 60, 60});
  CGPath twice = CGPath::rect({0, 0, 60, 60});
  for (const CGPoint corner : {CGPoint{20, 20}, {40, 20}, {40, 40}, {20, 40}})
    corner == CGPoint{20, 20} ? twice.moveTo(corner) : twice.lineTo(corner);
  twice.close();
  shape->setPath(twice.applying(CGAffineTransform::scale(0.5, 0.5)));
  shape->setFillColor(redColor);
  window->layer()->addSublayer(shape);
  EXPECT_PIXEL(25, 25, red);
  EXPECT_PIXEL(50, 25, white);
  shape->setFillRule(DrawingContext::FillRule::EvenOdd);
  EXPECT_PIXEL(25, 25, white);
  EXPECT_PIXEL(15, 25, red);
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
      {CGAffineTransform::scale(0.5, 3), {140, 85}, {110, 110}},
      {CGAffineTransform::scale(-1, 1), {110, 110}, {90, 110}},
      {{1, 0, 1, 1, 0, 0}, {182, 118}, {105, 118}}, // leaning
      {rotated.concatenating(CGAffineTransform::scale(1, 0.5)), {140, 95}, {140, 80}},
  };
  for (const Case& each : cases) {
    layer->setTransform(each.transform);
    const Pixels seen = screen();
    const auto in = seen.at(each.inside.x, each.inside.y);
    const auto out = seen.at(each.outside.x, each.outside.y);
    EXPECT_TRUE(in.isNear(red) && out.isNear(white)) << &each - cases << ": " << in << ", " << out;
    EXPECT_EQ(seen.count({255, 192, 203}, 6), 0) << &each - cases << ": an error is drawn";
  }
  for (const auto& flat : {CGAffineTransform::scale(0, 0), CGAffineTransform::scale(0, 1),
                           CGAffineTransform::scale(1e-9, 1)}) {
    layer->setTransform(flat);
    const Pixels seen = screen();
    EXPECT_EQ(seen.count({255, 192, 203}, 6), 0) << "an error is drawn";
    EXPECT_EQ(seen.count(red), 0);
  }
}

} // namespace
} // namespace zuvi::test
