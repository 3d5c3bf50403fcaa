#include "platform/Dispatch/Clock.h"

#include <chrono>

namespace zuvi {

TimeInterval SystemClock::now() const {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace zuvi
