#pragma once

#include "platform/CoreGraphics/CGColor.h"
#include "platform/CoreGraphics/CGGeometry.h"
#include "platform/CoreText/CTFont.h"
#include "platform/Export.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace zuvi {

/// Text in which ranges bear a colour of their own.
struct AttributedString {
  /// Characters in a row and their colour. What lies beyond the text's end is ignored.
  struct ColorRange {
    std::size_t location = 0; ///< in characters
    std::size_t length = 0;   ///< in characters
    CGColor color;            ///< without its alpha
    /// Equal when place and colour are.
    bool operator==(const ColorRange&) const = default;
  };
  std::string text;               ///< UTF-8
  std::vector<ColorRange> colors; ///< the rest has the label's own

  /// Equal when text and colours are.
  bool operator==(const AttributedString&) const = default;
};

/// The number of characters (not bytes) of a UTF-8 text.
ZUVI_API std::size_t characterCount(const std::string& text);

/// @cond
/// How much larger than its fonts say all text is, 1 at start. What was laid out before keeps its
/// size: `UIScreen::setTextScale` lays it out anew.
double textScale();
void setTextScale(double scale);
/// @endcond

/// Where lines stand that are shorter than their room.
enum class NSTextAlignment { Left, Center, Right };

/// A text broken into lines. Bytes that are no UTF-8 show as replacement marks. Main
/// thread.
class ZUVI_API TextLayout {
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
