#include "platform/AVFoundation/SerialQueue.h"

#include <chrono>

namespace zuvi {

SerialQueue::SerialQueue() : thread_([this] { run(); }) {}

SerialQueue::~SerialQueue() {
  {
    std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

namespace {

/// A queue whose work may still post to the others when the program ends, so they have to outlive
/// it.
struct LateQueue : SerialQueue {
  LateQueue() {
    DispatchQueue::main();
    DispatchQueue::global();
  }
};

} // namespace

SerialQueue& SerialQueue::film() {
  static LateQueue queue;
  return queue;
}

SerialQueue& SerialQueue::camera() {
  film();
  static LateQueue queue;
  return queue;
}

void SerialQueue::asyncAfter(TimeInterval delay, Work work) {
  const auto deadline = SystemClock().now() + delay;
  {
    std::lock_guard lock(mutex_);
    waiting_.emplace(deadline, std::move(work));
  }
  changed_.notify_all();
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
    } else if (ending_) {
      return;
    } else if (waiting_.empty()) {
      changed_.wait(lock);
    } else {
      changed_.wait_for(lock, std::chrono::duration<double>(waiting_.begin()->first - now));
    }
  }
}

} // namespace zuvi
