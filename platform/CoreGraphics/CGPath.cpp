#include <ZuviSDK/CoreGraphics/CGPath.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zuvi {

CGPath CGPath::rect(const CGRect& r) {
  CGPath path;
  path.moveTo({r.minX(), r.minY()});
  path.lineTo({r.maxX(), r.minY()});
  path.lineTo({r.maxX(), r.maxY()});
  path.lineTo({r.minX(), r.maxY()});
  path.close();
  return path;
}

CGPath CGPath::roundedRect(const CGRect& r, double radius) {
  radius = std::clamp(radius, 0.0, std::min(r.width, r.height) / 2);
  if (radius <= 0) return rect(r);
  constexpr double quarter = std::numbers::pi / 2;
  CGPath path;
  path.moveTo({r.minX() + radius, r.minY()});
  path.arc({r.maxX() - radius, r.minY() + radius}, radius, -quarter, 0);
  path.arc({r.maxX() - radius, r.maxY() - radius}, radius, 0, quarter);
  path.arc({r.minX() + radius, r.maxY() - radius}, radius, quarter, 2 * quarter);
  path.arc({r.minX() + radius, r.minY() + radius}, radius, 2 * quarter, 3 * quarter);
  path.close();
  return path;
}

CGPath CGPath::ellipse(const CGRect& r) {
  constexpr double kappa = 0.5522847498307936; // control distance of a quarter circle
  const double cx = r.midX(), cy = r.midY(), rx = r.width / 2, ry = r.height / 2;
  CGPath path;
  path.moveTo({cx + rx, cy});
  path.curveTo({cx + rx, cy + kappa * ry}, {cx + kappa * rx, cy + ry}, {cx, cy + ry});
  path.curveTo({cx - kappa * rx, cy + ry}, {cx - rx, cy + kappa * ry}, {cx - rx, cy});
  path.curveTo({cx - rx, cy - kappa * ry}, {cx - kappa * rx, cy - ry}, {cx, cy - ry});
  path.curveTo({cx + kappa * rx, cy - ry}, {cx + rx, cy - kappa * ry}, {cx + rx, cy});
  path.close();
  return path;
}

void CGPath::moveTo(CGPoint point) {
  elements_.push_back({Verb::Move, {point, {}, {}}});
}

void CGPath::lineTo(CGPoint point) {
  elements_.push_back({Verb::Line, {point, {}, {}}});
}

void CGPath::curveTo(CGPoint control1, CGPoint control2, CGPoint end) {
  elements_.push_back({Verb::Curve, {control1, control2, end}});
}

void CGPath::arc(CGPoint center, double radius, double start, double end) {
  const CGPoint first{center.x + radius * std::cos(start), center.y + radius * std::sin(start)};
  if (elements_.empty())
    moveTo(first);
  else
    lineTo(first);
  // One curve for at most a quarter turn keeps the error below a thousandth of the radius.
  const int pieces =
      std::max(1, static_cast<int>(std::ceil(std::abs(end - start) / (std::numbers::pi / 2))));
  const double step = (end - start) / pieces;
  const double reach = 4.0 / 3.0 * std::tan(step / 4) * radius;
  for (int i = 0; i < pieces; i++) {
    const double from = start + i * step, to = from + step;
    const CGPoint a{center.x + radius * std::cos(from), center.y + radius * std::sin(from)};
    const CGPoint b{center.x + radius * std::cos(to), center.y + radius * std::sin(to)};
    curveTo({a.x - reach * std::sin(from), a.y + reach * std::cos(from)},
            {b.x + reach * std::sin(to), b.y - reach * std::cos(to)}, b);
  }
}

void CGPath::close() {
  elements_.push_back({Verb::Close, {}});
}

CGPath CGPath::applying(const CGAffineTransform& transform) const {
  CGPath moved = *this;
  for (Element& element : moved.elements_)
    for (CGPoint& point : element.points)
      point = transform.apply(point);
  return moved;
}

CGRect CGPath::boundingBox() const {
  bool any = false;
  double left = 0, top = 0, right = 0, bottom = 0;
  for (const Element& element : elements_) {
    const int count = element.verb == Verb::Close ? 0 : element.verb == Verb::Curve ? 3 : 1;
    for (int i = 0; i < count; i++) {
      const CGPoint p = element.points[i];
      if (!any) left = right = p.x, top = bottom = p.y;
      any = true;
      left = std::min(left, p.x);
      right = std::max(right, p.x);
      top = std::min(top, p.y);
      bottom = std::max(bottom, p.y);
    }
  }
  return {left, top, right - left, bottom - top};
}

} // namespace zuvi
