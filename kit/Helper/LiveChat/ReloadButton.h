#pragma once

#include <ZuviSDK/UIKit/UIButton.h>

namespace zuvi {

/// The button with a border under an error.
class ReloadButton final : public UIButton {
public:
  ReloadButton();

  CGSize sizeThatFits(CGSize size) const override;
  void setHighlighted(bool highlighted) override;
};

} // namespace zuvi
