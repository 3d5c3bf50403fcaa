// Rectangles, transforms and outlines.

#include "platform/CoreGraphics/CGGeometry.h"
#include "platform/CoreGraphics/CGPath.h"

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
  const CGRect box = CGAffineTransform::rotation(std::numbers::pi / 4).apply(CGRect{-1, -1, 2, 2});
  EXPECT_NEAR(box.width, 2 * std::numbers::sqrt2, 1e-12);
  EXPECT_NEAR(box.midX(), 0, 1e-12);
}

/// The points that an outline passes, curves in small steps.
std::vector<CGPoint> walk(const CGPath& path) {
  std::vector<CGPoint> points;
  for (const auto& [verb, p] : path.elements()) {
    if (verb == CGPath::Verb::Move || verb == CGPath::Verb::Line) points.push_back(p[0]);
    if (verb != CGPath::Verb::Curve) continue;
    const CGPoint from = points.back();
    for (int i = 1; i <= 16; i++) {
      const double t = i / 16.0, u = 1 - t;
      const double w[] = {u * u * u, 3 * u * u * t, 3 * u * t * t, t * t * t};
      points.push_back({w[0] * from.x + w[1] * p[0].x + w[2] * p[1].x + w[3] * p[2].x,
                        w[0] * from.y + w[1] * p[0].y + w[2] * p[1].y + w[3] * p[2].y});
    }
  }
  return points;
}

TEST(PathTest, ArcsAndEllipsesStayOnTheirCircle) {
  CGPath arc;
  arc.arc({10, 20}, 50, -1, 4.5);
  CGPath backwards;
  backwards.arc({10, 20}, 50, 1, -2);
  for (const CGPath& path : {arc, backwards, CGPath::ellipse({-40, -30, 100, 100})})
    for (const CGPoint& p : walk(path))
      EXPECT_NEAR(std::hypot(p.x - 10, p.y - 20), 50, 0.05);
  EXPECT_NEAR(walk(arc).back().x, 10 + 50 * std::cos(4.5), 1e-9);
  EXPECT_NEAR(walk(backwards).back().y, 20 + 50 * std::sin(-2), 1e-9);
}

} // namespace
} // namespace zuvi::test
