#pragma once

#include "platform/Export.h"
#include "platform/Foundation/Timer.h"
#include "platform/UIKit/UIControl.h"
#include "platform/UIKit/UILabel.h"

#include <string>

namespace zuvi {

/// One line of text that a person can edit.
class ZUVI_API UITextField : public UIControl {
public:
  /// Empty, in the system's face at 17 points, without a frame around the text.
  /// @{
  UITextField();
  explicit UITextField(const CGRect& frame);
  /// @}

  /// UTF-8, on one line; empty at start.
  const std::string& text() const { return text_; }
  /// The caret goes to the end. Line ends become blanks. Targets hear only of what the person
  /// changes (`EditingChanged`).
  void setText(const std::string& text);
  /// Shown in grey while the text is empty, and spoken where there is no label.
  void setPlaceholder(const std::string& placeholder);
  /// Null takes the system's face at 17 points.
  void setFont(std::shared_ptr<const UIFont> font);
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
  /// The byte where the character before or after the one at `at` begins.
  std::size_t stepFrom(std::size_t at, bool forward) const;

  std::string text_, placeholder_;
  std::size_t caret_ = 0; ///< in bytes
  std::shared_ptr<UILabel> label_;
  std::shared_ptr<UIView> caretView_;
  std::shared_ptr<Timer> blink_;
};

} // namespace zuvi
