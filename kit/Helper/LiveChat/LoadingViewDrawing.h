#pragma once

#include "platform/QuartzCore/CAShapeLayer.h"

namespace zuvi {

/// Helpers to draw the parts of the loading view.
inline constexpr CGColor darkGrey{0.35294117647058826, 0.4117647058823529, 0.4627450980392157, 1.0};

/// Gives the layer a copy of `path`, scaled to the layer's size. The path is made for a square of
/// `baseSize`.
inline void applyScaled(CAShapeLayer& layer, const CGPath& path, double baseSize) {
  const CGRect bounds = layer.bounds();
  layer.setPath(
      path.applying(CGAffineTransform::scale(bounds.width / baseSize, bounds.height / baseSize)));
}

} // namespace zuvi
