#pragma once

#include <ZuviSDK/Dispatch/DispatchQueue.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

namespace zuvi {

/// A thread that runs one piece of work after the other. Keeps the main thread away from calls that
/// wait for a driver or a disk.
class SerialQueue {
public:
  SerialQueue();
  SerialQueue(const SerialQueue&) = delete;
  SerialQueue& operator=(const SerialQueue&) = delete;

  /// Cameras are opened, closed and watched here.
  static SerialQueue& camera();
  /// Films are written here: a disk that hangs leaves the cameras alone.
  static SerialQueue& film();

  void async(Work work) { asyncAfter(0, std::move(work)); }
  /// Once the queue has ended, work runs at once on the caller's thread and delayed work never.
  void asyncAfter(TimeInterval delay, Work work);
  /// Has `work` run last when the program ends: nothing may be left open then.
  void whenProgramEnds(Work work);

private:
  void end();
  void run();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::multimap<TimeInterval, Work> waiting_; // by deadline, on the machine's clock
  std::vector<Work> last_;
  enum class State { Open, Ending, Ended } state_ = State::Open;
  std::thread thread_;
};

} // namespace zuvi
