#pragma once

#include <cassert>
#include <functional>
#include <memory>
#include <utility>

namespace zuvi {

/// A callback that has to come exactly once. Copies share the one call; in a debug build a second
/// call, or dropping the last copy without a call, is an assertion.
template <class... Arguments> class Once {
public:
  template <class Function>
  requires std::invocable<Function&, Arguments...>
  Once(Function function) // NOLINT: a lambda is passed where a callback is asked for
      : call_(std::make_shared<Call>(std::move(function))) {}

  void operator()(Arguments... arguments) const {
    assert(call_->function && "a callback came twice");
    auto function = std::exchange(call_->function, nullptr);
    if (function) function(std::forward<Arguments>(arguments)...);
  }

private:
  struct Call {
    explicit Call(std::function<void(Arguments...)> f) : function(std::move(f)) {}
    ~Call() { assert(!function && "a callback was dropped"); }
    std::function<void(Arguments...)> function;
  };
  std::shared_ptr<Call> call_;
};

} // namespace zuvi
