#pragma once

#include <ZuviSDK/Export.h>

#include <optional>

namespace zuvi {

/// A place. All lengths here are points; x grows to the right, y downwards.
struct CGPoint {
  /// In points.
  /// @{
  double x = 0, y = 0;
  /// @}
  /// Exact, without any tolerance.
  bool operator==(const CGPoint&) const = default;
};

/// A width and a height. What computes sizes may give a negative side where it has no wish.
struct CGSize {
  /// In points.
  /// @{
  double width = 0, height = 0;
  /// @}
  /// Exact, without any tolerance.
  bool operator==(const CGSize&) const = default;
};

/// A rectangle by its top left corner and its size.
struct CGRect {
  /// In points.
  /// @{
  double x = 0, y = 0, width = 0, height = 0;
  /// @}

  /// An edge or the middle, in points.
  /// @{
  double minX() const { return x; }
  double minY() const { return y; }
  double midX() const { return x + width / 2; }
  double midY() const { return y + height / 2; }
  double maxX() const { return x + width; }
  double maxY() const { return y + height; }
  /// @}
  /// The top left corner, the size, the middle.
  /// @{
  CGPoint origin() const { return {x, y}; }
  CGSize size() const { return {width, height}; }
  CGPoint center() const { return {midX(), midY()}; }
  /// @}
  /// Whether a side is zero or negative.
  bool isEmpty() const { return width <= 0 || height <= 0; }
  /// The left and top edges belong to the rectangle, the right and bottom ones do not.
  bool contains(CGPoint p) const { return p.x >= x && p.x < maxX() && p.y >= y && p.y < maxY(); }
  /// The rectangle moved right by `dx` and down by `dy`.
  CGRect offsetBy(double dx, double dy) const { return {x + dx, y + dy, width, height}; }

  /// Exact, without any tolerance.
  bool operator==(const CGRect&) const = default;
};

/// The rectangle with `dx` taken off left and right, `dy` off top and bottom.
inline CGRect CGRectInset(const CGRect& rect, double dx, double dy) {
  return {rect.x + dx, rect.y + dy, rect.width - 2 * dx, rect.height - 2 * dy};
}
/// Empty when they do not overlap.
CGRect CGRectIntersection(const CGRect& a, const CGRect& b);
/// The smallest rectangle that holds both; an empty one adds nothing.
CGRect CGRectUnion(const CGRect& a, const CGRect& b);

/// How far something reaches in from each edge.
struct UIEdgeInsets {
  /// In points.
  /// @{
  double top = 0, left = 0, bottom = 0, right = 0;
  /// @}
  /// Exact, without any tolerance.
  bool operator==(const UIEdgeInsets&) const = default;
};

/// Moves, turns, scales and shears the plane: x' = a x + c y + tx, y' = b x + d y + ty.
struct CGAffineTransform {
  /// The identity at start.
  /// @{
  double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
  /// @}

  /// Moves by points, scales about the origin, or turns about it (radians, clockwise on the
  /// screen).
  /// @{
  static CGAffineTransform translation(double x, double y) { return {1, 0, 0, 1, x, y}; }
  static CGAffineTransform scale(double x, double y) { return {x, 0, 0, y, 0, 0}; }
  ZUVI_API static CGAffineTransform rotation(double radians);
  /// @}

  /// Whether it changes nothing at all.
  bool isIdentity() const { return *this == CGAffineTransform{}; }
  /// First this one, then `next`.
  CGAffineTransform concatenating(const CGAffineTransform& n) const {
    return {a * n.a + b * n.c, a * n.b + b * n.d,          c * n.a + d * n.c,
            c * n.b + d * n.d, tx * n.a + ty * n.c + n.tx, tx * n.b + ty * n.d + n.ty};
  }
  /// Absent when the transform flattens the plane.
  std::optional<CGAffineTransform> inverted() const;
  /// Where the point goes.
  CGPoint apply(CGPoint point) const;
  /// The bounding box of the transformed rectangle.
  CGRect apply(const CGRect& rect) const;

  /// Exact, without any tolerance.
  bool operator==(const CGAffineTransform&) const = default;
};

} // namespace zuvi
