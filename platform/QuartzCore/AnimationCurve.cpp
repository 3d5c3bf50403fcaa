#include "platform/QuartzCore/CAAnimation.h"

#include <algorithm>
#include <cmath>

namespace zuvi {

namespace {

/// The timing curve through (0,0), (x1,y1), (x2,y2), (1,1), at the share `t` of the time.
double bezier(double x1, double y1, double x2, double y2, double t) {
  const auto at = [](double p1, double p2, double s) {
    return 3 * (1 - s) * (1 - s) * s * p1 + 3 * (1 - s) * s * s * p2 + s * s * s;
  };
  double low = 0, high = 1;
  for (int i = 0; i < 24; i++) { // x grows with s, so halving finds it
    const double middle = (low + high) / 2;
    (at(x1, x2, middle) < t ? low : high) = middle;
  }
  return at(y1, y2, (low + high) / 2);
}

/// A damped spring let go at 0 that comes to rest at 1 within the duration.
double spring(double damping, double velocity, double t) {
  const double ratio = std::clamp(damping, 0.05, 1.0);
  // exp(-ratio * frequency) has fallen to a thousandth at the end of the animation.
  const double frequency = 6.9 / ratio;
  double rest; // distance still to go
  if (ratio < 1) {
    const double damped = frequency * std::sqrt(1 - ratio * ratio);
    const double sine = (ratio * frequency - velocity) / damped;
    rest = std::exp(-ratio * frequency * t) * (std::cos(damped * t) + sine * std::sin(damped * t));
  } else {
    rest = std::exp(-frequency * t) * (1 + (frequency - velocity) * t);
  }
  return 1 - rest;
}

} // namespace

double AnimationCurve::progress(double t, double duration) const {
  if (t <= 0) return 0;
  if (t >= 1) return 1;
  switch (kind) {
  case Kind::Linear:
    return t;
  case Kind::EaseIn:
    return bezier(0.42, 0, 1, 1, t);
  case Kind::EaseOut:
    return bezier(0, 0, 0.58, 1, t);
  case Kind::EaseInOut:
    return bezier(0.42, 0, 0.58, 1, t);
  case Kind::Spring:
    return spring(damping, initialVelocity * duration, t);
  }
  return t;
}

LayerValue CABasicAnimation::valueAt(TimeInterval now) const {
  double t = duration > 0 ? (now - beginTime) / duration : 1;
  if (repeatsForever) t = t < 0 ? 0 : t - std::floor(t);
  const double share = curve.progress(t, duration);
  LayerValue value;
  for (std::size_t i = 0; i < value.size(); i++)
    value[i] = from[i] + (to[i] - from[i]) * share;
  return value;
}

} // namespace zuvi
