#include "platform/QuartzCore/AnimationRetargeting.h"

namespace zuvi {

static int retargetings = 0; // that live

AnimationRetargeting::AnimationRetargeting() {
  retargetings++;
}

AnimationRetargeting::~AnimationRetargeting() {
  retargetings--;
}

bool AnimationRetargeting::isOn() {
  return retargetings > 0;
}

} // namespace zuvi
