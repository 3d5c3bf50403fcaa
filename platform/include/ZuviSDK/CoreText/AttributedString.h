#pragma once

#include <ZuviSDK/CoreGraphics/CGColor.h>

#include <cstddef>
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

/// Where lines stand that are shorter than their room.
enum class NSTextAlignment { Left, Center, Right };

} // namespace zuvi
