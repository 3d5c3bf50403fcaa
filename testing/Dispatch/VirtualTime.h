#pragma once

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include "platform/Dispatch/Clock.h"

#include <atomic>
#include <functional>

namespace zuvi {

/// A clock that stands still until it is moved.
class VirtualClock final : public Clock {
public:
  TimeInterval now() const override { return now_; }
  /// Any thread. Work that is due now runs when the queue is driven, not from here.
  void set(TimeInterval now) { now_ = now; }

private:
  std::atomic<TimeInterval> now_ = 1000.0; // other threads post, and so read it
};

/// Drives the main queue in a test: time moves only when told to. One at a time; the queue is
/// empty and on the virtual clock from construction, and back on the system clock afterwards.
class VirtualTime {
public:
  VirtualTime();
  ~VirtualTime();
  VirtualTime(const VirtualTime&) = delete;
  VirtualTime& operator=(const VirtualTime&) = delete;

  /// Moves the clock on by `seconds`, stopping at every deadline on the way to run what is due.
  void advance(TimeInterval seconds);
  /// Runs what is due now, and what that adds, until nothing is due.
  void settle();
  /// Waits in real time, running what other threads post, until `condition` holds. The virtual
  /// clock stands still. Returns whether it held within `realSeconds`.
  bool waitUntil(const std::function<bool()>& condition, double realSeconds = 10.0);

private:
  std::shared_ptr<VirtualClock> clock_;
};

} // namespace zuvi
