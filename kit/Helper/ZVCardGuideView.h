#pragma once

#include <ZuviSDK/UIKit/UIView.h>

namespace zuvi {

/// The guide over the preview of a document: labels with a background, and pictures of a card in
/// the same place. The nib puts the labels above and below the card. Where the card would be larger
/// with the labels beside it, as on a phone held sideways, they are beside it. Where there is no
/// room beside it either, for large text on a small screen, only the first label is shown. Made by
/// nibs only.
class ZVCardGuideView : public UIView {
public:
  void layoutSubviews() override;
};

} // namespace zuvi
