#pragma once

#include <ZuviSDK/UIKit/UIView.h>

namespace zuvi {

/// A round dot; made by nibs only.
class ZVPointView : public UIView {
public:
  void awakeFromNib() override { setClipsToBounds(true); }
  void layoutSubviews() override {
    UIView::layoutSubviews();
    layer()->setCornerRadius(frame().width / 2.0);
  }
};

} // namespace zuvi
