#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include <gio/gio.h>

namespace zuvi {

/// A camera portal on a bus of its own, which is the session bus as long as this object lives.
class FakePortal {
public:
  FakePortal();
  ~FakePortal();
  FakePortal(const FakePortal&) = delete;

  /// Takes the portal off the bus.
  void leave();

  std::atomic<int> response = 0; ///< what the user says; below 0: nothing
  std::atomic<int> asked = 0;    ///< how often the user was asked
  std::atomic<bool> present = true;

private:
  void serve();
  void called(const char* sender, const char* method, GDBusMethodInvocation* invocation);

  GTestDBus* daemon_;
  GMainContext* context_;
  GDBusConnection* connection_ = nullptr;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool ready_ = false;
  std::atomic<bool> ending_ = false;
  guint name_ = 0;
  std::thread thread_;
};

} // namespace zuvi
