#pragma once

#include <ZuviSDK/UIKit/UIControl.h>
#include <ZuviSDK/UIKit/UILabel.h>

#include <string>

namespace zuvi {

/// One line of text that a person can type. The caret stays at its end: keys add to it there, and
/// BackSpace takes the last character away. No selection, no clipboard, no dead keys and no input
/// methods: a host that asks for names in every script does so with a widget of its toolkit.
class UITextField : public UIControl {
public:
  /// Empty, in the system's face at 17 points, without a frame around the text.
  /// @{
  UITextField();
  explicit UITextField(const CGRect& frame);
  /// @}

  /// UTF-8; empty at start.
  const std::string& text() const { return text_; }
  /// Targets hear only of what the person changes (`EditingChanged`).
  void setText(const std::string& text);
  /// Shown in grey while the text is empty, and spoken where there is no label.
  void setPlaceholder(const std::string& placeholder);
  /// Null takes the system's face at 17 points.
  void setFont(std::shared_ptr<const UIFont> font) { label_->setFont(std::move(font)); }
  /// Whether it has the focus.
  bool isEditing() const { return isFirstResponder(); }

  /// Where in its bounds the text stands while it is not edited, and while it is; all of them
  /// unless a subclass says else.
  /// @{
  virtual CGRect textRect(const CGRect& bounds) const { return bounds; }
  virtual CGRect editingRect(const CGRect& bounds) const { return bounds; }
  /// @}

  void touchBegan(CGPoint point) override;
  void didChangeFirstResponder(bool focused) override;
  bool keyPressed(const KeyPress& key) override;
  bool accessibilityActivate() override { return isEnabled() && becomeFirstResponder(); }
  void layoutSubviews() override;
  CGSize intrinsicContentSize() const override;
  UIAccessibilityElement accessibilityElement() const override;
  void describe(Value::Dictionary& description) const override;
  bool setNibAttribute(const std::string& name, const std::string& value) override;

private:
  void changed();

  std::string text_, placeholder_;
  std::shared_ptr<UILabel> label_;
  std::shared_ptr<UIView> caret_;
};

} // namespace zuvi
