#include <ZuviSDK/CoreGraphics/CGGeometry.h>

#include <algorithm>
#include <cmath>

namespace zuvi {

CGRect CGRectIntersection(const CGRect& a, const CGRect& b) {
  const double left = std::max(a.minX(), b.minX()), top = std::max(a.minY(), b.minY());
  const double right = std::min(a.maxX(), b.maxX()), bottom = std::min(a.maxY(), b.maxY());
  if (right <= left || bottom <= top) return {};
  return {left, top, right - left, bottom - top};
}

CGRect CGRectUnion(const CGRect& a, const CGRect& b) {
  if (a.isEmpty()) return b;
  if (b.isEmpty()) return a;
  const double left = std::min(a.minX(), b.minX()), top = std::min(a.minY(), b.minY());
  return {left, top, std::max(a.maxX(), b.maxX()) - left, std::max(a.maxY(), b.maxY()) - top};
}

CGAffineTransform CGAffineTransform::rotation(double radians) {
  const double cosine = std::cos(radians), sine = std::sin(radians);
  return {cosine, sine, -sine, cosine, 0, 0};
}

std::optional<CGAffineTransform> CGAffineTransform::inverted() const {
  const double determinant = a * d - b * c;
  if (determinant == 0 || !std::isfinite(determinant)) return std::nullopt;
  return CGAffineTransform{d / determinant,
                           -b / determinant,
                           -c / determinant,
                           a / determinant,
                           (c * ty - d * tx) / determinant,
                           (b * tx - a * ty) / determinant};
}

CGPoint CGAffineTransform::apply(CGPoint p) const {
  return {a * p.x + c * p.y + tx, b * p.x + d * p.y + ty};
}

CGRect CGAffineTransform::apply(const CGRect& rect) const {
  const CGPoint corners[] = {
      apply(CGPoint{rect.minX(), rect.minY()}), apply(CGPoint{rect.maxX(), rect.minY()}),
      apply(CGPoint{rect.minX(), rect.maxY()}), apply(CGPoint{rect.maxX(), rect.maxY()})};
  double left = corners[0].x, right = left, top = corners[0].y, bottom = top;
  for (const CGPoint& corner : corners) {
    left = std::min(left, corner.x);
    right = std::max(right, corner.x);
    top = std::min(top, corner.y);
    bottom = std::max(bottom, corner.y);
  }
  return {left, top, right - left, bottom - top};
}

} // namespace zuvi
