#pragma once

#include "testing/backend/LoopbackServer.h"

#include <condition_variable>

namespace zuvi {

/// A back end that answers as the test says, and only when the test lets it.
class Backend {
public:
  using Handler = test::LoopbackServer::Handler;

  ~Backend() { release(); }

  std::string url(const std::string& path = "/") const { return server_.url(path); }
  /// Tracking is always answered and never asks `handler`.
  void answer(Handler handler) {
    const std::lock_guard lock(mutex_);
    handler_ = std::move(handler);
  }
  void answer(const std::string& body, int status = 200) {
    answer([body, status](const test::Request&) { return test::Reply{status, {}, body}; });
  }
  /// Answers, all or those to one method, wait until `release`.
  void hold(const std::string& method = "") {
    const std::lock_guard lock(mutex_);
    held_ = true;
    heldMethod_ = method;
  }
  void release() {
    const std::lock_guard lock(mutex_);
    held_ = false;
    released_.notify_all();
  }

  /// What came, without tracking.
  std::vector<test::Request> requests() const { return matching(false); }
  std::vector<test::Request> events() const { return matching(true); }

private:
  static bool isEvent(const test::Request& request) { return request.path == "/track/"; }

  std::vector<test::Request> matching(bool events) const {
    std::vector<test::Request> found;
    for (auto& request : server_.requests())
      if (isEvent(request) == events) found.push_back(std::move(request));
    return found;
  }

  test::Reply reply(const test::Request& request) {
    if (isEvent(request)) return {};
    Handler handler;
    {
      std::unique_lock lock(mutex_);
      released_.wait(
          lock, [&] { return !held_ || (!heldMethod_.empty() && heldMethod_ != request.method); });
      handler = handler_;
    }
    return handler ? handler(request) : test::Reply{404, {}, ""};
  }

  std::mutex mutex_;
  std::condition_variable released_;
  bool held_ = false;
  std::string heldMethod_;
  Handler handler_;
  test::LoopbackServer server_{[this](const test::Request& request) { return reply(request); }};
};

} // namespace zuvi
