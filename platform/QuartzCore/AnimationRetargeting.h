#pragma once

namespace zuvi {

/// While one lives, what changes without an animation of its own moves the end of the animation
/// that runs, which it would cut short otherwise: for changes that nobody meant, as of a window's
/// size, and those of a layout. Main queue only.
class AnimationRetargeting {
public:
  AnimationRetargeting();
  ~AnimationRetargeting();
  AnimationRetargeting(const AnimationRetargeting&) = delete;
  AnimationRetargeting& operator=(const AnimationRetargeting&) = delete;

  static bool isOn();
};

} // namespace zuvi
