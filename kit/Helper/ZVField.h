#pragma once

#include "platform/UIKit/UITextField.h"

namespace zuvi {

/// A text field whose text keeps 10 points away from the left and right edge.
class ZVField : public UITextField {
public:
  using UITextField::UITextField;
  CGRect textRect(const CGRect& bounds) const override { return CGRectInset(bounds, 10, 0); }
  CGRect editingRect(const CGRect& bounds) const override { return CGRectInset(bounds, 10, 0); }
};

} // namespace zuvi
