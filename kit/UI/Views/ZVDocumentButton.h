#pragma once

#include <ZuviSDK/UIKit/UIButton.h>

namespace zuvi {

/// The frame of a document's row; its border takes the merchant's colour under a finger.
class ZVDocumentButton : public UIButton {
public:
  using UIButton::UIButton;
  void setHighlighted(bool highlighted) override;

  /// The border of a row at rest.
  static constexpr UIColor restingBorder = UIColor::bytes(227, 227, 227);
};

} // namespace zuvi
