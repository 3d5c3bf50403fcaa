#include <ZuviSDK/UIKit/UILabel.h>

#include <ZuviSDK/QuartzCore/DrawingContext.h>
#include "platform/CoreText/TextLayout.h"
#include "platform/UIKit/NibValues.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <utility>

namespace zuvi {

namespace {

bool breaksWord(const std::string& text, const TextLayout::Style& style, double width) {
  std::istringstream words(text);
  for (std::string word; words >> word;)
    if (TextLayout({word, {}}, style, -1).size().width > width) return true;
  return false;
}

} // namespace

UILabel::UILabel(const CGRect& frame) : UIView(frame), font_(UIFont::system(17)) {}

std::optional<std::string> UILabel::text() const {
  return text_ ? std::optional(text_->text) : std::nullopt;
}

void UILabel::changed() {
  layout_ = nullptr;
  setNeedsDisplay();
  invalidateIntrinsicContentSize();
}

void UILabel::setText(std::optional<std::string> text) {
  std::optional<AttributedString> plain;
  if (text) plain = AttributedString{std::move(*text), {}};
  setAttributedText(std::move(plain));
}

void UILabel::setAttributedText(std::optional<AttributedString> text) {
  if (text == text_) return;
  text_ = std::move(text);
  changed();
}

void UILabel::setFont(std::shared_ptr<const UIFont> font) {
  font_ = font ? std::move(font) : UIFont::system(17);
  changed();
}

void UILabel::setTextColor(const UIColor& color) {
  if (color == color_) return;
  color_ = color;
  changed();
}

void UILabel::setTextAlignment(NSTextAlignment alignment) {
  alignment_ = alignment;
  changed();
}

void UILabel::setNumberOfLines(int lines) {
  lines_ = lines;
  changed();
}

void UILabel::setMinimumScaleFactor(double factor) {
  if (factor == minimumScale_) return;
  minimumScale_ = factor;
  changed();
}

std::shared_ptr<const TextLayout> UILabel::layoutForWidth(double width) const {
  if (!text_) return nullptr;
  if (layout_ && layoutWidth_ == width && layoutScale_ == textScale()) return layout_;
  TextLayout::Style style{font_, color_, alignment_, lines_};
  auto made = std::make_shared<TextLayout>(*text_, style, width);
  const auto isTooLarge = [&] {
    return made->isTruncated() ||
           (width >= 0 && lines_ != 1 && breaksWord(text_->text, style, width));
  };
  for (double scale = 0.95; scale >= minimumScale_ - 1e-9 && isTooLarge(); scale -= 0.05) {
    style.font = font_->withSize(font_->pointSize() * scale);
    made = std::make_shared<TextLayout>(*text_, style, width);
  }
  layout_ = made;
  layoutWidth_ = width;
  layoutScale_ = textScale();
  return made;
}

CGSize UILabel::intrinsicContentSize() const {
  const auto layout = layoutForWidth(-1);
  return layout ? layout->size() : CGSize{0, 0};
}

CGSize UILabel::sizeThatFits(CGSize size) const {
  const auto layout = layoutForWidth(size.width);
  return layout ? layout->size() : CGSize{0, 0};
}

bool UILabel::isClipped() const {
  const auto layout = layoutForWidth(bounds().width);
  if (!layout || text_->text.empty()) return false;
  // Half points are what layout rounds to.
  return layout->isTruncated() || layout->size().height > bounds().height + 1 ||
         layout->size().width > bounds().width + 1;
}

void UILabel::draw(DrawingContext& context) {
  const auto layout = layoutForWidth(bounds().width);
  if (!layout) return;
  const double free = bounds().height - layout->size().height;
  context.drawText(*layout, {bounds().x, bounds().y + std::round(free) / 2});
}

void UILabel::didMoveToWindow() {
  if (layout_ && layoutScale_ != textScale()) changed(); // while nobody saw it
}

UIAccessibilityElement UILabel::accessibilityElement() const {
  UIAccessibilityElement element = UIView::accessibilityElement();
  if (element.name.empty() && text_) element.name = text_->text;
  const bool blank = element.name.find_first_not_of(' ') == std::string::npos;
  if (!accessibilityRole) element.role = UIAccessibilityRole::StaticText;
  if (blank) element.role = UIAccessibilityRole::None;
  return element;
}

void UILabel::describe(Value::Dictionary& description) const {
  UIView::describe(description);
  if (text_) description["text"] = text_->text;
  if (text_ && !text_->colors.empty())
    description["markColor"] = textFromColor(text_->colors.front().color) + " at " +
                               std::to_string(text_->colors.front().location);
  description["textColor"] = textFromColor(color_);
  std::ostringstream font;
  font << font_->name() << ' ' << font_->pointSize();
  description["font"] = font.str();
  description["clipped"] = isClipped();
}

bool UILabel::setNibAttribute(const std::string& name, const std::string& value) {
  if (name == "text") {
    setText(value);
    return true;
  }
  if (name == "font") return nib::withFont(value, [&](const auto& font) { setFont(font); });
  if (name == "color") return nib::withColor(value, [&](const UIColor& v) { setTextColor(v); });
  if (name == "lines")
    return nib::withNumberIn(value, 0, 999, [&](double v) { setNumberOfLines(int(v)); });
  if (name == "shrink")
    return nib::withNumberIn(value, 0.05, 1, [&](double v) { setMinimumScaleFactor(v); });
  if (name == "align") {
    if (value == "left")
      setTextAlignment(NSTextAlignment::Left);
    else if (value == "center")
      setTextAlignment(NSTextAlignment::Center);
    else if (value == "right")
      setTextAlignment(NSTextAlignment::Right);
    else
      return false;
    return true;
  }
  return UIView::setNibAttribute(name, value);
}

} // namespace zuvi
