#pragma once

#include "platform/QuartzCore/CAShapeLayer.h"

namespace zuvi {

/// What the parts of the loading view are drawn with.
inline constexpr CGColor darkGrey{0.35294117647058826, 0.4117647058823529, 0.4627450980392157, 1.0};

/// Gives the layer a copy of `path`, which is drawn for a square of `baseSize`, in the layer's
/// size.
inline void applyScaled(CAShapeLayer& layer, const CGPath& path, double baseSize) {
  const CGRect bounds = layer.bounds();
  layer.setPath(
      path.applying(CGAffineTransform::scale(bounds.width / baseSize, bounds.height / baseSize)));
}

} // namespace zuvi
