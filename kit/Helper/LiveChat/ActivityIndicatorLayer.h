#pragma once

#include "platform/QuartzCore/CAShapeLayer.h"

namespace zuvi {

/// A ring: three quarters are light, the quarter around the top is dark.
class ActivityIndicatorLayer final : public CALayer {
public:
  static constexpr double baseSize = 60.0;
  ActivityIndicatorLayer();

  /// Redraws the circles; call it after every change of the size.
  void layoutSublayers();

private:
  // From back to front, each with its outline for the base size.
  std::shared_ptr<CAShapeLayer> darkCircleLayer_, lightCircleLayer_, maskingLayer_,
      outMaskingLayer_;
  CGPath darkGreyCirclePath_, lightGrayCirclePath_, maskingCirclePath_, outMaskingCirclePath_;
};

} // namespace zuvi
