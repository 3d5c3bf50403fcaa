#pragma once

#include <ZuviSDK/Dispatch/TimeInterval.h>
#include <ZuviSDK/Export.h>

#include <atomic>

namespace zuvi {

/// Where the main queue, and with it every timer and animation, reads the time.
class ZUVI_API Clock {
public:
  virtual ~Clock() = default;
  /// Any thread.
  virtual TimeInterval now() const = 0;
};

/// The machine's monotonic clock.
class ZUVI_API SystemClock final : public Clock {
public:
  TimeInterval now() const override;
};

/// A clock that stands still until it is moved; for tests.
class ZUVI_API VirtualClock final : public Clock {
public:
  TimeInterval now() const override { return now_; }
  /// Any thread. Work that is due now runs when the queue is driven, not from here.
  void set(TimeInterval now) { now_ = now; }

private:
  std::atomic<TimeInterval> now_ = 1000.0; // other threads post, and so read it
};

} // namespace zuvi
