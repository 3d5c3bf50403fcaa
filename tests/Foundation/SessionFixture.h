#pragma once

#include "platform/Foundation/URLSession.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/ScopedEnvironment.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

namespace zuvi {

struct Outcome {
  std::optional<Data> data;
  std::optional<URLResponse> response;
  std::optional<Error> error;
  std::thread::id thread;

  int code() const { return error ? error->code : 0; }
  std::string text() const { return error ? error->description : "no error"; }
};

/// The completion of one request, to be waited for.
class Pending {
public:
  URLSession::Completion completion() {
    return [state = state_](auto data, auto response, auto error) {
      const std::lock_guard lock(state->mutex);
      ++state->calls;
      state->outcome = {data, response, error, std::this_thread::get_id()};
      state->called.notify_all();
    };
  }

  Outcome outcome() const {
    std::unique_lock lock(state_->mutex);
    if (!state_->called.wait_for(lock, std::chrono::seconds(30), [this] { return state_->calls; }))
      throw std::runtime_error("no completion came");
    return state_->outcome;
  }

  int calls() const {
    const std::lock_guard lock(state_->mutex);
    return state_->calls;
  }

private:
  struct State {
    std::mutex mutex;
    std::condition_variable called;
    int calls = 0;
    Outcome outcome;
  };
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

class SessionFixture : public testing::Test {
protected:
  static URLRequest to(const std::string& address) {
    return URLRequest(URL::fromString(address).value());
  }

  URLSession& session() { return session_; }

  Outcome send(const URLRequest& request) {
    const Pending pending = start(request);
    return pending.outcome();
  }

  Pending start(const URLRequest& request) {
    Pending pending;
    session_.dataTask(request, pending.completion())->resume();
    return pending;
  }

private:
  URLSession session_{URLSessionConfiguration()};
};

} // namespace zuvi
