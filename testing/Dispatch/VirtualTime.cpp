#include "testing/Dispatch/VirtualTime.h"

#include <algorithm>
#include <chrono>

namespace zuvi {

namespace {
// Sums of intervals differ in their last digits; what is this close counts as reached.
constexpr TimeInterval rounding = 1e-9;
} // namespace

VirtualTime::VirtualTime() : clock_(std::make_shared<VirtualClock>()) {
  auto& queue = DispatchQueue::main();
  queue.removeAll();
  queue.setClock(clock_);
  queue.adoptCurrentThread();
}

VirtualTime::~VirtualTime() {
  auto& queue = DispatchQueue::main();
  queue.removeAll();
  queue.setClock(std::make_shared<SystemClock>());
}

void VirtualTime::advance(TimeInterval seconds) {
  auto& queue = DispatchQueue::main();
  const TimeInterval target = clock_->now() + std::max(seconds, 0.0);
  for (;;) {
    const TimeInterval next = queue.nextDeadline();
    if (next > target + rounding) break;
    clock_->set(std::max(next, clock_->now()));
    queue.runDue();
  }
  clock_->set(std::max(target, clock_->now()));
}

void VirtualTime::settle() {
  while (DispatchQueue::main().runDue() > 0) {
  }
}

bool VirtualTime::waitUntil(const std::function<bool()>& condition, double realSeconds) {
  using std::chrono::steady_clock;
  const auto end = steady_clock::now() + std::chrono::duration<double>(realSeconds);
  for (;;) {
    settle();
    if (condition()) return true;
    if (steady_clock::now() >= end) return false;
    // The condition may come true without any work, so look again now and then.
    DispatchQueue::main().waitForWork(0.01);
  }
}

} // namespace zuvi
