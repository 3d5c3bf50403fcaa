#pragma once

namespace zuvi {

/// How progress runs from 0 to 1 over an animation.
struct AnimationCurve {
  /// Where it is slow: nowhere, at the start, at the end, at both; or it swings like a spring.
  enum class Kind { Linear, EaseIn, EaseOut, EaseInOut, Spring };
  Kind kind = Kind::EaseInOut; ///< ease in and out
  double damping = 1;          ///< spring only: ratio; 1 and above does not overshoot
  double initialVelocity = 0;  ///< spring only: distances a second at the start

  /// Progress after the share `t` (0 to 1) of an animation of `duration` seconds.
  double progress(double t, double duration) const;
};

} // namespace zuvi
