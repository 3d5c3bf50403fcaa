#include <ZuviSDK/Dispatch/DispatchQueue.h>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <new>
#include <thread>
#include <vector>

namespace zuvi {

namespace {

class ThreadPool final : public DispatchQueue {
public:
  ThreadPool() {
    const unsigned count = std::clamp(std::thread::hardware_concurrency(), 2U, 4U);
    for (unsigned i = 0; i < count; ++i)
      threads_.emplace_back([this] { run(); });
  }

  WorkId async(Work work) override {
    const std::lock_guard lock(mutex_);
    if (stopping_) return ++lastId_; // the process is on its way out: `work` dies with this call
    waiting_.push_back(std::move(work));
    ready_.notify_one();
    return ++lastId_;
  }

  void stop() {
    std::deque<Work> dropped;
    {
      const std::lock_guard lock(mutex_);
      stopping_ = true;
      dropped.swap(waiting_);
    }
    ready_.notify_all();
    for (auto& thread : threads_)
      thread.join();
  }

private:
  void run() {
    std::unique_lock lock(mutex_);
    for (;;) {
      ready_.wait(lock, [this] { return stopping_ || !waiting_.empty(); });
      if (stopping_) return;
      {
        const Work work = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        // What runs out of memory is given up; the host goes on.
        try {
          work();
        } catch (const std::bad_alloc&) {
        }
      }
      lock.lock();
    }
  }

  std::mutex mutex_;
  std::condition_variable ready_;
  std::deque<Work> waiting_;
  bool stopping_ = false;
  WorkId lastId_ = 0;
  std::vector<std::thread> threads_;
};

} // namespace

DispatchQueue& DispatchQueue::global() {
  // The pool itself is never destroyed, so that late callers find it; its threads end at exit.
  static auto* pool = new ThreadPool;
  static const struct Stopper {
    ~Stopper() { pool->stop(); }
  } stopper;
  return *pool;
}

} // namespace zuvi
