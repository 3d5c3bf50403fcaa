#pragma once

#include <ZuviSDK/UIKit/UIView.h>

namespace zuvi {

/// What lies over the preview of a document: labels with a ground under them, and pictures of one
/// card in one place. The nib puts the labels above and below the card; where that leaves a smaller
/// card, as on a phone held sideways, they stand beside it. Made by nibs only.
class ZVCardGuideView : public UIView {
public:
  void layoutSubviews() override;
};

} // namespace zuvi
