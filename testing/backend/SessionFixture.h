#pragma once

#include "platform/Foundation/URLSession.h"
#include "testing/backend/LoopbackServer.h"
#include "testing/support/ScopedEnvironment.h"

#include <atomic>
#include <future>
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
      if (state->calls++ == 0)
        state->outcome.set_value({data, response, error, std::this_thread::get_id()});
    };
  }
  Outcome outcome() const {
    if (!within(std::chrono::seconds(30))) throw std::runtime_error("no completion came");
    return known_.get();
  }
  bool within(std::chrono::milliseconds time) const {
    return known_.wait_for(time) == std::future_status::ready;
  }
  int calls() const { return state_->calls; }

private:
  struct State {
    std::atomic<int> calls = 0;
    std::promise<Outcome> outcome;
  };
  std::shared_ptr<State> state_ = std::make_shared<State>();
  std::shared_future<Outcome> known_ = state_->outcome.get_future().share();
};

class SessionFixture : public testing::Test {
protected:
  static URLRequest to(const std::string& address) {
    return URLRequest(URL::fromString(address).value());
  }

  URLSession& session() { return session_; }

  Outcome send(const URLRequest& request) { return start(request).outcome(); }

  Pending start(const URLRequest& request) {
    Pending pending;
    session_.dataTask(request, pending.completion())->resume();
    return pending;
  }

private:
  URLSession session_{URLSessionConfiguration()};
};

} // namespace zuvi
