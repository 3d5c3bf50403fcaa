// Rectangles, transforms and outlines.

#include "platform/CoreGraphics/CGGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace zuvi::test {
namespace {

TEST(GeometryTest, TransformsConcatenateInReadingOrderAndTurnBack) {
  const auto turn = CGAffineTransform::rotation(std::numbers::pi / 2);
  const auto both = turn.concatenating(CGAffineTransform::translation(10, 0));
  const CGPoint p = both.apply(CGPoint{1, 0});
  EXPECT_NEAR(p.x, 10, 1e-12); // first turned, clockwise on the screen, then moved
  EXPECT_NEAR(p.y, 1, 1e-12);
  const auto mixed = both.concatenating(CGAffineTransform::scale(2, -3));
  const auto back = mixed.inverted();
  ASSERT_TRUE(back);
  const CGPoint there = mixed.apply(CGPoint{3, 7}), here = back->apply(there);
  EXPECT_NEAR(here.x, 3, 1e-12);
  EXPECT_NEAR(here.y, 7, 1e-12);
  EXPECT_FALSE(CGAffineTransform::scale(0, 1).inverted());
  EXPECT_FALSE(CGAffineTransform::scale(std::nan(""), 1).inverted());
}

} // namespace
} // namespace zuvi::test
