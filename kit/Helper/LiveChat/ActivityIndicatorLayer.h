#pragma once

#include "platform/QuartzCore/CAShapeLayer.h"

namespace zuvi {

/// A ring of which three quarters are light and the quarter round the top is dark.
class ActivityIndicatorLayer final : public CALayer {
public:
  static constexpr double baseSize = 60.0;
  ActivityIndicatorLayer();

  /// After every change of the size: draws the circles anew.
  void layoutSublayers();

private:
  // From back to front, each with its outline for the base size.
  std::shared_ptr<CAShapeLayer> darkCircleLayer_, lightCircleLayer_, maskingLayer_,
      outMaskingLayer_;
  CGPath darkGreyCirclePath_, lightGrayCirclePath_, maskingCirclePath_, outMaskingCirclePath_;
};

} // namespace zuvi
