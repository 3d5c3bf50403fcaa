#include "platform/QuartzCore/CAAnimation.h"

#include <utility>

namespace zuvi {

namespace {
AnimationGroup* currentGroup = nullptr;
}

AnimationGroup* AnimationGroup::current() {
  return currentGroup;
}

void AnimationGroup::run(const std::function<void()>& changes) {
  AnimationGroup* outer = currentGroup;
  currentGroup = this;
  changes();
  currentGroup = outer;
  blockDone_ = true;
  if (running_ == 0) { // nothing moved, so it has ended already
    running_ = 1;
    ended(true);
  }
}

void AnimationGroup::ended(bool finished) {
  allFinished_ = allFinished_ && finished;
  if (--running_ > 0 || !blockDone_ || !completion) return;
  DispatchQueue::main().async(
      [completion = std::exchange(completion, nullptr), all = allFinished_] { completion(all); });
}

} // namespace zuvi
