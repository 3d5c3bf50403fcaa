#pragma once

#include <ZuviSDK/UIKit/UIButton.h>

namespace zuvi {

/// The button around a document's row; while it is touched its border has the merchant's colour.
class ZVDocumentButton : public UIButton {
public:
  using UIButton::UIButton;
  void setHighlighted(bool highlighted) override;

  /// The border of a row that is not touched.
  static UIColor restingBorder();
};

} // namespace zuvi
