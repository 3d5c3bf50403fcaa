#pragma once

#include "platform/QuartzCore/CAAnimation.h"

#include <functional>

namespace zuvi {

/// Runs a movement between screens. While it runs touches are not heard. `done` comes once: after
/// the movement, or at once when it is not animated. The result ends it early.
std::function<void()> runTransition(bool animated, TimeInterval duration,
                                    const std::function<void()>& changes,
                                    std::function<void()> done);

} // namespace zuvi
