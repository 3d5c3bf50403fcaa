#pragma once

#include <ZuviSDK/CoreGraphics/CGColor.h>
#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/CoreGraphics/CGImage.h>
#include <ZuviSDK/CoreGraphics/CGPath.h>
#include <ZuviSDK/Export.h>

#include <vector>

namespace zuvi {

class TextLayout;

/// What a layer draws itself with, in its own coordinates. Lives only during one `draw`.
class ZUVI_API DrawingContext {
public:
  /// @cond
  struct Native;
  explicit DrawingContext(Native& native) : native_(native) {}
  /// @endcond

  /// Pixels a point.
  double scale() const;

  /// The rectangle, its corners rounded by that many points. An empty one draws nothing.
  /// @{
  void fill(const CGRect& rect, const CGColor& color);
  void fill(const CGRect& rect, double cornerRadius, const CGColor& color);
  /// @}
  /// What several parts of the outline enclose is inside, or counts as inside and outside in turn.
  enum class FillRule { NonZero, EvenOdd };
  /// What the outline encloses.
  void fill(const CGPath& path, const CGColor& color, FillRule rule = FillRule::NonZero);
  /// The line is `width` points wide, with round ends and joins.
  void stroke(const CGPath& path, const CGColor& color, double width);
  /// From top to bottom through evenly spaced colours.
  ZUVI_HIDDEN void fillGradient(const CGRect& rect, const std::vector<CGColor>& colors);
  /// The picture stretched over the rectangle.
  void drawImage(const CGImage& image, const CGRect& rect);
  /// The text, its lines' top left corner at the point.
  ZUVI_HIDDEN void drawText(const TextLayout& text, CGPoint origin);

  /// @cond
  /// For files that draw with the toolkit themselves.
  Native& native() { return native_; }
  /// @endcond

private:
  Native& native_;
};

} // namespace zuvi
