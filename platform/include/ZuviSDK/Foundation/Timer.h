#pragma once

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Export.h>

#include <functional>
#include <memory>

namespace zuvi {

/// Fires on the main queue every so many seconds until it is invalidated or dropped. The first
/// firing comes one interval after the start; firings keep to the grid of the start, and those that
/// were missed while the queue was busy are left out. Main queue only.
class Timer : public std::enable_shared_from_this<Timer> {
public:
  /// Whether it fires once or until it is invalidated.
  enum class Repeats { No, Yes };

  /// Starts at once. Whoever called holds the timer: one that nobody holds never fires. An interval
  /// below a tenth of a millisecond counts as that.
  ZUVI_API static std::shared_ptr<Timer> scheduled(TimeInterval interval, Repeats repeats,
                                                   std::function<void()> fire);
  /// Like `invalidate`.
  ~Timer();

  /// It never fires again, also when called from within `fire`.
  ZUVI_API void invalidate();
  /// Whether it will fire again.
  bool isValid() const { return pending_ != 0; }

private:
  void schedule();

  TimeInterval interval_ = 0;
  TimeInterval next_ = 0;
  Repeats repeats_ = Repeats::No;
  std::function<void()> fire_;
  WorkId pending_ = 0;
};

} // namespace zuvi
