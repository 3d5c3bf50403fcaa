#pragma once

#include "platform/Dispatch/DispatchQueue.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

namespace zuvi {

/// A thread that runs one piece of work after the other. Keeps the main thread away from calls that
/// wait for a driver or a disk.
class SerialQueue {
public:
  SerialQueue();
  /// Runs what waits without a delay, then ends the thread.
  ~SerialQueue();
  SerialQueue(const SerialQueue&) = delete;
  SerialQueue& operator=(const SerialQueue&) = delete;

  /// Cameras are opened, closed and watched here.
  static SerialQueue& camera();
  /// Films are written here: a disk that hangs leaves the cameras alone.
  static SerialQueue& film();

  void async(Work work) { asyncAfter(0, std::move(work)); }
  void asyncAfter(TimeInterval delay, Work work);

private:
  void run();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::multimap<TimeInterval, Work> waiting_; // by deadline, on the machine's clock
  bool ending_ = false;
  std::thread thread_;
};

} // namespace zuvi
