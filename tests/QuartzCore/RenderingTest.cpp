// The pixels that layers leave on the screen.

#include "platform/QuartzCore/CAGradientLayer.h"
#include "platform/QuartzCore/CAShapeLayer.h"
#include "testing/UIKit/ScreenFixture.h"

#include <numbers>

namespace zuvi::test {
namespace {

constexpr CGColor redColor{1, 0, 0, 1}, greenColor{0, 1, 0, 1}, blueColor{0, 0, 1, 1};

class RenderingTest : public ScreenFixture {
protected:
  /// On the window, or within another layer.
  std::shared_ptr<CALayer> addLayer(const CGRect& frame, const CGColor& color,
                                    CALayer* parent = nullptr) {
    auto layer = watch("a layer", std::make_shared<CALayer>());
    layer->setFrame(frame);
    layer->setBackgroundColor(color);
    (parent ? *parent : *window->layer()).addSublayer(layer);
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
  addLayer({-10, -10, 30, 60}, blueColor, layer.get());
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
  addLayer({0, 0, 5, 5}, redColor, layer.get());
  for (const bool mirrored : {true, false}) {
    layer->setContentsMirrored(mirrored);
    EXPECT_PIXEL(12, 30, mirrored ? blue : red);
    EXPECT_PIXEL(12, 12, red);
  }
}

TEST_F(RenderingTest, OpacityCoversTheWholeSubtreeAsOne) {
  const auto layer = addLayer({10, 10, 40, 40}, redColor);
  addLayer({0, 0, 20, 40}, blueColor, layer.get());
  layer->setOpacity(0.5);
  EXPECT_PIXEL(40, 30, (Pixel{255, 128, 128}));
  EXPECT_PIXEL(20, 30, (Pixel{128, 128, 255})); // no red shines through
}

TEST_F(RenderingTest, ShapesAreFilledByTheirRule) {
  const auto shape = watch("a shape", std::make_shared<CAShapeLayer>());
  shape->setFrame({10, 10, 60, 60});
  CGPath twice = CGPath::rect({0, 0, 60, 60});
  twice.moveTo({20, 20});
  for (const CGPoint corner : {CGPoint{40, 20}, {40, 40}, {20, 40}})
    twice.lineTo(corner);
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
  using Transform = CGAffineTransform;
  const struct {
    Transform transform;
    CGPoint inside, outside;
    bool flat = false; // nothing is to be seen of it
  } rows[] = {
      {rotated, {140, 80}, {110, 110}},
      {Transform::scale(0.5, 3), {140, 85}, {110, 110}},
      {Transform::scale(-1, 1), {110, 110}, {90, 110}},
      {{1, 0, 1, 1, 0, 0}, {182, 118}, {105, 118}}, // leaning
      {rotated.concatenating(Transform::scale(1, 0.5)), {140, 95}, {140, 80}},
      {Transform::scale(0, 0), {140, 110}, {110, 110}, true},
      {Transform::scale(0, 1), {140, 110}, {110, 110}, true},
      {Transform::scale(1e-9, 1), {140, 110}, {110, 110}, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    layer->setTransform(row.transform);
    EXPECT_PIXEL(row.inside.x, row.inside.y, row.flat ? white : red);
    EXPECT_PIXEL(row.outside.x, row.outside.y, white);
    EXPECT_EQ(screen().count({255, 192, 203}, 6), 0) << "an error is drawn";
  }
}

} // namespace
} // namespace zuvi::test
