#include "platform/AVFoundation/SerialQueue.h"

#include "platform/Dispatch/Clock.h"

#include <chrono>
#include <cstdlib>

namespace zuvi {

SerialQueue::SerialQueue() : thread_([this] { run(); }) {}

// Neither is ever destroyed: sessions in static objects may end after everything else.

SerialQueue& SerialQueue::film() {
  static auto* queue = new SerialQueue;
  return *queue;
}

SerialQueue& SerialQueue::camera() {
  static auto* queue = [] {
    std::atexit([] {
      camera().end();
      film().end(); // what a camera's end does to its films runs here
    });
    return new SerialQueue;
  }();
  return *queue;
}

void SerialQueue::asyncAfter(TimeInterval delay, Work work) {
  const auto deadline = SystemClock().now() + delay;
  {
    const std::lock_guard lock(mutex_);
    if (state_ != State::Ended) {
      waiting_.emplace(deadline, std::move(work));
      changed_.notify_all();
      return;
    }
  }
  if (delay == 0) work();
}

void SerialQueue::whenProgramEnds(Work work) {
  camera(); // which arranges for the end of both
  const std::lock_guard lock(mutex_);
  last_.push_back(std::move(work));
}

void SerialQueue::end() {
  std::vector<Work> last;
  {
    const std::lock_guard lock(mutex_);
    last.swap(last_);
  }
  for (auto& work : last)
    async(std::move(work));
  {
    const std::lock_guard lock(mutex_);
    state_ = State::Ending;
    changed_.notify_all();
  }
  thread_.join();
}

void SerialQueue::run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    const auto now = SystemClock().now();
    if (!waiting_.empty() && waiting_.begin()->first <= now) {
      auto work = std::move(waiting_.extract(waiting_.begin()).mapped());
      lock.unlock();
      work();
      work = nullptr; // what it holds may post to this queue as it goes
      lock.lock();
    } else if (state_ == State::Ending) {
      state_ = State::Ended;
      return;
    } else if (waiting_.empty()) {
      changed_.wait(lock);
    } else {
      changed_.wait_for(lock, std::chrono::duration<double>(waiting_.begin()->first - now));
    }
  }
}

} // namespace zuvi
