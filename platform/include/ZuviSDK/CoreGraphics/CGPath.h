#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/Export.h>

#include <vector>

namespace zuvi {

/// An outline of lines and curves.
class ZUVI_API CGPath {
public:
  /// Begins a line, draws a straight or a curved one, or leads back to where it began.
  enum class Verb { Move, Line, Curve, Close };
  /// One step of the outline.
  struct Element {
    Verb verb;         ///< says how many points count
    CGPoint points[3]; ///< curve: two controls and the end; move and line: the first
  };

  /// The edges, clockwise from the top left corner, closed.
  static CGPath rect(const CGRect& rect);
  /// `radius` of the corners in points, at most half of the shorter side.
  static CGPath roundedRect(const CGRect& rect, double radius);
  /// The ellipse that touches all four edges.
  static CGPath ellipse(const CGRect& rect);

  /// Begins a new line there.
  void moveTo(CGPoint point);
  /// A straight line from the current point.
  void lineTo(CGPoint point);
  /// A cubic curve from the current point, drawn towards the two controls.
  void curveTo(CGPoint control1, CGPoint control2, CGPoint end);
  /// An arc from `start` to `end` (radians, clockwise on the screen), joined by a line if the path
  /// has a current point.
  void arc(CGPoint center, double radius, double start, double end);
  /// A straight line back to where this line began.
  void close();

  /// A copy with every point moved.
  ZUVI_HIDDEN CGPath applying(const CGAffineTransform& transform) const;

  /// Whether it has no element at all.
  bool isEmpty() const { return elements_.empty(); }
  /// In the order in which they were added.
  const std::vector<Element>& elements() const { return elements_; }
  /// The box around all points, controls included.
  ZUVI_HIDDEN CGRect boundingBox() const;

private:
  std::vector<Element> elements_;
};

} // namespace zuvi
