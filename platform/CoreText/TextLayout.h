#pragma once

#include <ZuviSDK/CoreGraphics/CGColor.h>
#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/CoreText/AttributedString.h>
#include <ZuviSDK/CoreText/CTFont.h>

#include <cstddef>
#include <memory>
#include <string>

namespace zuvi {

/// The number of characters (not bytes) of a UTF-8 text.
std::size_t characterCount(const std::string& text);

/// @cond
/// How much larger than its fonts say all text is, 1 at start; very large fonts keep their size.
/// What was laid out before keeps its size: `UIScreen::setTextScale` lays it out anew.
double textScale();
void setTextScale(double scale);
/// @endcond

/// A text broken into lines. Bytes that are no UTF-8 show as replacement marks. Main
/// thread.
class TextLayout {
public:
  /// How the text looks.
  struct Style {
    std::shared_ptr<const CTFont> font;                ///< null: the desktop's plain face
    CGColor color;                                     ///< of what no range colours
    NSTextAlignment alignment = NSTextAlignment::Left; ///< within the width
    int numberOfLines = 1;                             ///< 0: as many as it takes
  };

  /// `width` in points; a negative width leaves the text on one line of its natural width.
  TextLayout(const AttributedString& text, const Style& style, double width);

  /// What the lines take, rounded up to whole points.
  CGSize size() const;
  /// Whether text was left out, with an ellipsis in its place.
  bool isTruncated() const;
  /// The colour of its style.
  const CGColor& color() const { return color_; }

  /// @cond
  /// The toolkit's layout; for files that draw.
  void* native() const { return layout_.get(); }
  /// @endcond

private:
  void cutAfter(int lines);

  std::shared_ptr<void> layout_;
  CGColor color_;
  bool cut_ = false;
};

} // namespace zuvi
