#include "platform/UIKit/UITextField.h"

#include <ZuviSDK/UIKit/KeyPress.h>

#include <algorithm>

namespace zuvi {

UITextField::UITextField() : UITextField(CGRect{}) {}

UITextField::UITextField(const CGRect& frame)
    : UIControl(frame), label_(make<UILabel>()), caret_(make<UIView>()) {
  setClipsToBounds(true);
  caret_->setBackgroundColor(UIColor::bytes(25, 118, 210));
  caret_->setHidden(true);
  addSubview(label_);
  addSubview(caret_);
}

void UITextField::setText(const std::string& text) {
  text_ = text;
  changed();
}

void UITextField::setPlaceholder(const std::string& placeholder) {
  placeholder_ = placeholder;
  changed();
}

void UITextField::changed() {
  label_->setText(text_.empty() ? placeholder_ : text_);
  label_->setTextColor(text_.empty() ? UIColor::bytes(150, 158, 170) : defaultTextColor);
  setNeedsLayout();
}

void UITextField::touchBegan(CGPoint point) {
  UIControl::touchBegan(point);
  if (isEnabled()) becomeFirstResponder();
}

void UITextField::didChangeFirstResponder(bool focused) {
  caret_->setHidden(!focused);
  setNeedsLayout();
}

bool UITextField::keyPressed(const KeyPress& key) {
  if (!isEnabled()) return false;
  if (key.name == "Return" || key.name == "Escape") {
    resignFirstResponder();
    return true;
  }
  if (key.name == "BackSpace") {
    if (text_.empty()) return true;
    while (text_.size() > 1 && (text_.back() & 0xc0) == 0x80) // the character's further bytes
      text_.pop_back();
    text_.pop_back();
  } else if (!key.text.empty()) {
    text_ += key.text;
  } else {
    return false;
  }
  changed();
  sendActions(UIControlEvent::EditingChanged);
  return true;
}

void UITextField::layoutSubviews() {
  UIControl::layoutSubviews();
  const CGRect area = isEditing() ? editingRect(bounds()) : textRect(bounds());
  const double height = label_->font()->lineHeight();
  const double y = area.midY() - height / 2;
  const double length = text_.empty() ? 0 : label_->intrinsicContentSize().width;
  // The text moves left just as far as keeps the caret in sight.
  const double hidden = isEditing() ? std::max(0.0, length + 2 - area.width) : 0;
  label_->setFrame({area.x - hidden, y, area.width + hidden, height});
  caret_->setFrame({area.x - hidden + length, y, 2, height});
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
