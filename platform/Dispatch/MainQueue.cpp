#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include "platform/Dispatch/Clock.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <map>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <utility>

namespace zuvi {

namespace {
// Ids grow with arrival, so the pair sorts by deadline and then by arrival.
using Key = std::pair<TimeInterval, WorkId>;
} // namespace

struct MainQueue::State {
  mutable std::mutex mutex;
  std::condition_variable added;
  bool hasNewWork = false;
  std::map<Key, Work> waiting;
  std::unordered_map<WorkId, TimeInterval> deadlines;
  WorkId lastId = 0;
  std::shared_ptr<Clock> clock = std::make_shared<SystemClock>();
  std::function<void()> wakeUp;
  std::atomic<std::thread::id> thread = std::this_thread::get_id();
};

MainQueue& DispatchQueue::main() {
  // Never destroyed: objects that die at exit still cancel their work here.
  static auto* queue = new MainQueue;
  return *queue;
}

MainQueue::MainQueue() : state_(std::make_unique<State>()) {}
MainQueue::~MainQueue() = default;

WorkId MainQueue::async(Work work) {
  return asyncAfter(0, std::move(work));
}

WorkId MainQueue::asyncAfter(TimeInterval delay, Work work) {
  return asyncAt(now() + std::max(delay, 0.0), std::move(work));
}

WorkId MainQueue::asyncAt(TimeInterval deadline, Work work) {
  WorkId id = 0;
  std::function<void()> wakeUp;
  {
    const std::lock_guard lock(state_->mutex);
    id = ++state_->lastId;
    const TimeInterval now = state_->clock->now();
    const Key key{deadline > now ? deadline : now, id}; // also when the deadline is no number
    state_->waiting.emplace(key, std::move(work));
    state_->deadlines.emplace(id, key.first);
    state_->hasNewWork = true;
    if (state_->waiting.begin()->first == key) wakeUp = state_->wakeUp;
  }
  state_->added.notify_all();
  if (wakeUp) wakeUp();
  return id;
}

void MainQueue::cancel(WorkId id) {
  Work dropped; // dies outside the lock: what it holds may come back here
  const std::lock_guard lock(state_->mutex);
  const auto deadline = state_->deadlines.find(id);
  if (deadline == state_->deadlines.end()) return;
  const auto entry = state_->waiting.find({deadline->second, id});
  dropped = std::move(entry->second);
  state_->waiting.erase(entry);
  state_->deadlines.erase(deadline);
}

TimeInterval MainQueue::now() const {
  const std::lock_guard lock(state_->mutex);
  return state_->clock->now();
}

void MainQueue::setClock(std::shared_ptr<Clock> clock) {
  const std::lock_guard lock(state_->mutex);
  state_->clock = std::move(clock);
}

void MainQueue::setWakeUp(std::function<void()> wakeUp) {
  const std::lock_guard lock(state_->mutex);
  state_->wakeUp = std::move(wakeUp);
}

bool MainQueue::isCurrent() const {
  return state_->thread == std::this_thread::get_id();
}

void MainQueue::adoptCurrentThread() {
  state_->thread = std::this_thread::get_id();
}

int MainQueue::runDue() {
  adoptCurrentThread();
  std::unique_lock lock(state_->mutex);
  state_->hasNewWork = false;
  const TimeInterval now = state_->clock->now();
  const WorkId last = state_->lastId;
  int count = 0;
  while (!state_->waiting.empty()) {
    const auto first = state_->waiting.begin();
    const auto [deadline, id] = first->first;
    if (deadline > now || id > last) break;
    {
      const Work work = std::move(first->second);
      state_->waiting.erase(first);
      state_->deadlines.erase(id);
      lock.unlock();
      work();
    }
    ++count;
    lock.lock();
  }
  return count;
}

TimeInterval MainQueue::nextDeadline() const {
  const std::lock_guard lock(state_->mutex);
  return state_->waiting.empty() ? std::numeric_limits<TimeInterval>::infinity()
                                 : state_->waiting.begin()->first.first;
}

void MainQueue::waitForWork(double seconds) {
  std::unique_lock lock(state_->mutex);
  state_->added.wait_for(lock, std::chrono::duration<double>(std::clamp(seconds, 0.0, 1e6)),
                         [this] { return state_->hasNewWork; });
  state_->hasNewWork = false;
}

void MainQueue::removeAll() {
  std::map<Key, Work> dropped;
  const std::lock_guard lock(state_->mutex);
  dropped.swap(state_->waiting);
  state_->deadlines.clear();
}

} // namespace zuvi
