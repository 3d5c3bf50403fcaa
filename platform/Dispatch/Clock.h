#pragma once

#include <ZuviSDK/Dispatch/TimeInterval.h>

namespace zuvi {

/// Where the main queue, and with it every timer and animation, reads the time.
class Clock {
public:
  virtual ~Clock() = default;
  /// Any thread.
  virtual TimeInterval now() const = 0;
};

/// The machine's monotonic clock.
class SystemClock final : public Clock {
public:
  TimeInterval now() const override;
};

} // namespace zuvi
