#pragma once

#include <ZuviSDK/CoreText/AttributedString.h>
#include <ZuviSDK/Export.h>
#include <ZuviSDK/UIKit/UIFont.h>
#include <ZuviSDK/UIKit/UIView.h>

#include <memory>
#include <optional>
#include <string>

namespace zuvi {

class TextLayout;

/// Text to read, on one line or more.
class ZUVI_API UILabel : public UIView {
public:
  /// Empty, on one line, in the system's face at 17 points.
  explicit UILabel(const CGRect& frame = {});

  /// Absent shows nothing.
  std::optional<std::string> text() const;
  /// UTF-8.
  void setText(std::optional<std::string> text);
  /// Text with colours of its own; `setText` takes them away.
  const std::optional<AttributedString>& attributedText() const { return text_; }
  /// Absent shows nothing.
  ZUVI_HIDDEN void setAttributedText(std::optional<AttributedString> text);
  /// Never null.
  const std::shared_ptr<const UIFont>& font() const { return font_; }
  /// Null takes the system's face at 17 points.
  void setFont(std::shared_ptr<const UIFont> font);
  /// Of all text that has no colour of its own; a dark blue at start.
  /// @{
  UIColor textColor() const { return color_; }
  void setTextColor(const UIColor& color);
  /// @}
  /// Left at start.
  /// @{
  NSTextAlignment textAlignment() const { return alignment_; }
  void setTextAlignment(NSTextAlignment alignment);
  /// @}
  /// 1 at start.
  int numberOfLines() const { return lines_; }
  /// 0: as many as it takes.
  void setNumberOfLines(int lines);
  /// Down to this share of the font's size the text shrinks to fit the width; 1: not at all.
  ZUVI_HIDDEN void setMinimumScaleFactor(double factor);

  /// Whether part of the text does not fit into the bounds.
  ZUVI_HIDDEN bool isClipped() const;

  ZUVI_HIDDEN CGSize intrinsicContentSize() const override;
  ZUVI_HIDDEN CGSize sizeThatFits(CGSize size) const override;
  ZUVI_HIDDEN void draw(DrawingContext& context) override;
  ZUVI_HIDDEN void didMoveToWindow() override;
  UIView* hitTest(CGPoint) override { return nullptr; }
  ZUVI_HIDDEN UIAccessibilityElement accessibilityElement() const override;
  ZUVI_HIDDEN void describe(Value::Dictionary& description) const override;
  ZUVI_HIDDEN bool setNibAttribute(const std::string& name, const std::string& value) override;

private:
  ZUVI_HIDDEN std::shared_ptr<const TextLayout> layoutForWidth(double width) const;
  ZUVI_HIDDEN void changed();

  std::optional<AttributedString> text_;
  std::shared_ptr<const UIFont> font_;
  UIColor color_ = defaultTextColor;
  NSTextAlignment alignment_ = NSTextAlignment::Left;
  int lines_ = 1;
  double minimumScale_ = 1;
  mutable double layoutWidth_ = -2;
  mutable double layoutScale_ = 0; ///< of the text
  mutable std::shared_ptr<const TextLayout> layout_;
};

} // namespace zuvi
