#pragma once

#include <ZuviSDK/Dispatch/TimeInterval.h>
#include <ZuviSDK/Export.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace zuvi {

class Clock;

/// Work waiting on a queue. Id 0 is never given out.
using WorkId = std::uint64_t;
/// What a queue runs, once.
using Work = std::function<void()>;

/// A queue of closures. `main()` runs them one after the other on the main thread, ordered by
/// deadline and, within one deadline, by arrival; `global()` runs them on a small pool of threads
/// in no promised order. All members may be called from any thread.
class DispatchQueue {
public:
  virtual ~DispatchQueue() = default;

  /// The one queue of its kind, made on first use.
  /// @{
  ZUVI_API static class MainQueue& main();
  ZUVI_API static DispatchQueue& global();
  /// @}

  /// Runs `work` as soon as its turn comes; never before this call has returned.
  virtual WorkId async(Work work) = 0;
};

/// The main thread's queue. Somebody has to drive it: `MainLoop` in a program, `VirtualTime` in a
/// test. `adoptCurrentThread`, `runDue`, `nextDeadline`, `waitForWork` and `removeAll` are for
/// whoever does, on the main thread.
class MainQueue final : public DispatchQueue {
public:
  /// An empty one, for tests; the program's own is `DispatchQueue::main`.
  MainQueue();
  ~MainQueue() override;

  ZUVI_API WorkId async(Work work) override;

  /// Runs `work` `delay` seconds from now; a negative delay counts as 0.
  ZUVI_API WorkId asyncAfter(TimeInterval delay, Work work);

  /// Runs `work` when the clock reaches `deadline`; one that has passed counts as now.
  WorkId asyncAt(TimeInterval deadline, Work work);

  /// Forgets work that has not begun; any other id is ignored.
  ZUVI_API void cancel(WorkId id);

  /// The clock's time, in seconds.
  TimeInterval now() const;

  /// Replaces the clock (`SystemClock` at start). Call before anything waits on the queue.
  void setClock(std::shared_ptr<Clock> clock);

  /// Called, on the thread that adds work, whenever the next deadline may have moved closer.
  void setWakeUp(std::function<void()> wakeUp);

  /// Whether the calling thread is the one that last ran work here (or made the queue).
  bool isCurrent() const;

  /// Makes the calling thread the main one.
  void adoptCurrentThread();
  /// Runs what was due when the call began, in order; returns how many ran.
  int runDue();
  /// Deadline of the first waiting work; infinity when nothing waits.
  TimeInterval nextDeadline() const;
  /// Blocks the thread until other threads add work or `seconds` of real time are over.
  void waitForWork(double seconds);
  /// Drops everything that waits.
  void removeAll();

private:
  struct State;
  std::unique_ptr<State> state_;
};

} // namespace zuvi
