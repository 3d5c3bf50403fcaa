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
  UITextField();
  explicit UITextField(const CGRect& frame);

  const std::string& text() const { return text_; }
  /// The caret goes to the end. Line ends become blanks.
  void setText(const std::string& text);
  void setPlaceholder(const std::string& placeholder);
  void setFont(std::shared_ptr<const UIFont> font);
  bool isEditing() const { return isFirstResponder(); }

  /// Where the text stands while it is not edited, and while it is.
  virtual CGRect textRect(const CGRect& bounds) const { return bounds; }
  virtual CGRect editingRect(const CGRect& bounds) const { return bounds; }

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
