#pragma once

#include <ZuviSDK/UIKit/UIButton.h>
#include "platform/QuartzCore/CAShapeLayer.h"

namespace zuvi {

/// A drawn X in a square large enough for a finger.
class CloseButton final : public UIButton {
public:
  CloseButton();

  const std::shared_ptr<CAShapeLayer>& closeIcon() const { return closeIcon_; }
  CGSize sizeThatFits(CGSize size) const override;
  void layoutSubviews() override;
  void setHighlighted(bool highlighted) override;

private:
  static constexpr double baseSize = 14.0;

  std::shared_ptr<CAShapeLayer> closeIcon_ = std::make_shared<CAShapeLayer>();
  CGPath closeIconPath_;
};

} // namespace zuvi
