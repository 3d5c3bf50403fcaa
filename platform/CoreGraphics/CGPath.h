#pragma once

#include "platform/CoreGraphics/CGGeometry.h"
#include "platform/Export.h"

#include <vector>

namespace zuvi {

/// An outline of lines and curves.
class ZUVI_API CGPath {
public:
  enum class Verb { Move, Line, Curve, Close };
  struct Element {
    Verb verb;
    CGPoint points[3]; // curve: two controls and the end; move and line: the first
  };

  static CGPath rect(const CGRect& rect);
  static CGPath roundedRect(const CGRect& rect, double radius);
  static CGPath ellipse(const CGRect& rect);

  void moveTo(CGPoint point);
  void lineTo(CGPoint point);
  void curveTo(CGPoint control1, CGPoint control2, CGPoint end);
  /// An arc from `start` to `end` (radians, clockwise on the screen), joined by a line if the path
  /// has a current point.
  void arc(CGPoint center, double radius, double start, double end);
  void close();

  /// A copy with every point moved.
  CGPath applying(const CGAffineTransform& transform) const;

  bool isEmpty() const { return elements_.empty(); }
  const std::vector<Element>& elements() const { return elements_; }
  /// The box around all points, controls included.
  CGRect boundingBox() const;

private:
  std::vector<Element> elements_;
};

} // namespace zuvi
