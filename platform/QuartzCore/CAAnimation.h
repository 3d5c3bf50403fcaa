#pragma once

#include <ZuviSDK/CoreGraphics/CGColor.h>
#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/QuartzCore/AnimationCurve.h>

#include <array>
#include <functional>
#include <memory>

namespace zuvi {

/// What of a layer can move over time.
enum class LayerProperty {
  Opacity,
  Position,
  Bounds,
  Transform,
  BackgroundColor,
  BorderColor,
  CornerRadius,
  Rotation, ///< turns the layer about its centre, in radians; for an animation only
};

/// The value of one property, as numbers that can be mixed.
struct LayerValue : std::array<double, 6> {};

/// The numbers of a value in the order of its fields; those that are left are 0.
/// @{
inline LayerValue layerValue(double v) {
  return {{{v}}};
}
inline LayerValue layerValue(CGPoint p) {
  return {{{p.x, p.y}}};
}
inline LayerValue layerValue(const CGRect& r) {
  return {{{r.x, r.y, r.width, r.height}}};
}
inline LayerValue layerValue(const CGColor& c) {
  return {{{c.red, c.green, c.blue, c.alpha}}};
}
inline LayerValue layerValue(const CGAffineTransform& t) {
  return {{{t.a, t.b, t.c, t.d, t.tx, t.ty}}};
}
/// @}

/// A block of changes that are animated together and end together. Main queue only.
class AnimationGroup : public std::enable_shared_from_this<AnimationGroup> {
public:
  TimeInterval duration = 0.25; ///< in seconds; 0: changes take effect at once
  TimeInterval delay = 0;       ///< seconds until they begin to move
  AnimationCurve curve;         ///< one for all
  /// Comes once on the main queue, when every animation of the group has ended; `finished` is false
  /// if one was cut short.
  std::function<void(bool finished)> completion;

  /// The group whose block is running; null outside of one.
  static AnimationGroup* current();
  /// Runs `changes`; every animatable property that they set moves to its new value over time.
  void run(const std::function<void()>& changes);

  // For layers.
  /// @cond
  void added() { running_++; }
  void ended(bool finished);
  /// @endcond

private:
  int running_ = 0;
  bool allFinished_ = true;
  bool blockDone_ = false;
};

/// One property on its way.
struct CABasicAnimation {
  LayerProperty property = LayerProperty::Opacity; ///< what moves
  /// Where it begins and ends, as `layerValue` gives it.
  /// @{
  LayerValue from{}, to{};
  /// @}
  TimeInterval beginTime = 0;            ///< on the main queue's clock
  TimeInterval duration = 0.25;          ///< in seconds; of one round when it repeats
  AnimationCurve curve;                  ///< of each round
  bool repeatsForever = false;           ///< begins anew at `from`
  std::shared_ptr<AnimationGroup> group; ///< null when it stands alone

  /// The value at a time of the main queue's clock; `from` before the start, `to` after the end
  /// unless it repeats.
  LayerValue valueAt(TimeInterval now) const;
};

} // namespace zuvi
