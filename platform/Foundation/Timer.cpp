#include <ZuviSDK/Foundation/Timer.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace zuvi {

std::shared_ptr<Timer> Timer::scheduled(TimeInterval interval, Repeats repeats,
                                        std::function<void()> fire) {
  constexpr TimeInterval shortest = 0.0001; // a repeating timer must let time pass
  auto timer = std::make_shared<Timer>();
  timer->interval_ = interval > shortest ? interval : shortest;
  timer->repeats_ = repeats;
  timer->fire_ = std::move(fire);
  timer->next_ = DispatchQueue::main().now() + timer->interval_;
  timer->schedule();
  return timer;
}

Timer::~Timer() {
  invalidate();
}

void Timer::invalidate() {
  DispatchQueue::main().cancel(std::exchange(pending_, 0));
  const auto dropped = std::exchange(fire_, nullptr); // what it holds may be the last to hold us
}

void Timer::schedule() {
  pending_ = DispatchQueue::main().asyncAt(next_, [weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    const auto fire = self->fire_; // outlives an invalidation from within
    if (self->repeats_ == Repeats::Yes) {
      const TimeInterval late = DispatchQueue::main().now() - self->next_;
      self->next_ += (std::floor(std::max(late, 0.0) / self->interval_) + 1) * self->interval_;
      self->schedule();
    } else {
      self->pending_ = 0;
      self->fire_ = nullptr;
    }
    if (fire) fire();
  });
}

} // namespace zuvi
