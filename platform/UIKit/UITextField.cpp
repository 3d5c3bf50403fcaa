#include "platform/UIKit/UITextField.h"

#include "platform/UIKit/KeyPress.h"
#include "platform/UIKit/NibValues.h"

#include <algorithm>

namespace zuvi {

UITextField::UITextField() : UITextField(CGRect{}) {}

UITextField::UITextField(const CGRect& frame)
    : UIControl(frame), label_(make<UILabel>()), caretView_(make<UIView>()) {
  setClipsToBounds(true);
  caretView_->setBackgroundColor(UIColor::bytes(25, 118, 210));
  caretView_->setHidden(true);
  addSubview(label_);
  addSubview(caretView_);
}

void UITextField::setText(const std::string& text) {
  text_ = text;
  std::replace_if(
      text_.begin(), text_.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
  caret_ = text_.size();
  changed();
}

void UITextField::setPlaceholder(const std::string& placeholder) {
  placeholder_ = placeholder;
  changed();
}

void UITextField::setFont(std::shared_ptr<const UIFont> font) {
  label_->setFont(std::move(font));
}

void UITextField::changed() {
  label_->setText(text_.empty() ? placeholder_ : text_);
  label_->setTextColor(text_.empty() ? UIColor::bytes(150, 158, 170) : UIColor::bytes(31, 38, 53));
  setNeedsLayout();
}

std::size_t UITextField::stepFrom(std::size_t at, bool forward) const {
  const auto continues = [this](std::size_t i) {
    return i < text_.size() && (static_cast<unsigned char>(text_[i]) & 0xc0) == 0x80;
  };
  if (forward) {
    if (at < text_.size()) at++;
    while (continues(at))
      at++;
  } else {
    if (at > 0) at--;
    while (at > 0 && continues(at))
      at--;
  }
  return at;
}

void UITextField::touchBegan(CGPoint point) {
  UIControl::touchBegan(point);
  if (isEnabled()) becomeFirstResponder();
}

void UITextField::didChangeFirstResponder(bool focused) {
  caretView_->setHidden(!focused);
  blink_ = nullptr;
  if (focused)
    blink_ = Timer::scheduled(0.6, Timer::Repeats::Yes,
                              [this] { caretView_->setHidden(!caretView_->isHidden()); });
  setNeedsLayout();
}

bool UITextField::keyPressed(const KeyPress& key) {
  if (!isEnabled()) return false;
  const std::string before = text_;
  if (key.name == "BackSpace") {
    const std::size_t from = stepFrom(caret_, false);
    text_.erase(from, caret_ - from);
    caret_ = from;
  } else if (key.name == "Delete") {
    text_.erase(caret_, stepFrom(caret_, true) - caret_);
  } else if (key.name == "Left" || key.name == "Right") {
    caret_ = stepFrom(caret_, key.name == "Right");
  } else if (key.name == "Home" || key.name == "End") {
    caret_ = key.name == "Home" ? 0 : text_.size();
  } else if (key.name == "Return" || key.name == "Escape") {
    resignFirstResponder();
    return true;
  } else if (!key.text.empty() && static_cast<unsigned char>(key.text[0]) >= 0x20) {
    text_.insert(caret_, key.text);
    caret_ += key.text.size();
  } else {
    return false;
  }
  changed();
  if (text_ != before) sendActions(UIControlEvent::EditingChanged);
  return true;
}

void UITextField::layoutSubviews() {
  UIControl::layoutSubviews();
  const CGRect area = isEditing() ? editingRect(bounds()) : textRect(bounds());
  const TextLayout::Style style{label_->font(), {}, NSTextAlignment::Left, 1};
  const TextLayout before({text_.substr(0, caret_), {}}, style, -1);
  const double caret = before.size().width;
  // The text moves left just as far as keeps the caret in sight.
  const double overflow = isEditing() ? std::max(0.0, caret + 2 - area.width) : 0;
  const double height = label_->font()->lineHeight();
  const double width = std::max(area.width, label_->intrinsicContentSize().width);
  label_->setFrame(
      {area.x - overflow, area.midY() - height / 2, isEditing() ? width : area.width, height});
  caretView_->setFrame({area.x - overflow + caret, area.midY() - height / 2, 2, height});
}

CGSize UITextField::intrinsicContentSize() const {
  return {-1, label_->font()->lineHeight() + 16};
}

UIAccessibilityElement UITextField::accessibilityElement() const {
  UIAccessibilityElement element = UIControl::accessibilityElement();
  if (!accessibilityRole) element.role = UIAccessibilityRole::TextField;
  if (element.name.empty()) element.name = placeholder_;
  if (element.value.empty()) element.value = text_;
  return element;
}

void UITextField::describe(Value::Dictionary& description) const {
  UIControl::describe(description);
  description["text"] = text_;
}

bool UITextField::setNibAttribute(const std::string& name, const std::string& value) {
  if (name == "text") {
    setText(value);
    return true;
  }
  if (name == "placeholder") {
    setPlaceholder(value);
    return true;
  }
  if (name == "font") return label_->setNibAttribute(name, value);
  return UIControl::setNibAttribute(name, value);
}

} // namespace zuvi
