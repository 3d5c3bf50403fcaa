#pragma once

#include "sandbox/core/Result.h"

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace zuvi::sandbox {

enum class FailAction { drop, cut, truncate, nonJson, empty, message, status, json, delay, never };

/// One operation that fails on purpose, at some of its calls.
struct FailRule {
  std::string operation;
  unsigned first = 1; ///< calls count from 1
  unsigned last = 1;  ///< inclusive
  FailAction action = FailAction::drop;
  std::string text; ///< of `message` and `json`
  int status = 0;
  std::chrono::milliseconds delay{0};

  /// Reads OPERATION:WHICH:ACTION, such as "identity:1:drop" or "photo:2-4:message=Too dark".
  static Result<FailRule> parse(std::string_view text);
};

/// The rules of a run, with the count of the calls that came so far. Safe on every thread.
class FailPlan {
public:
  static Result<std::vector<FailRule>> parse(const std::vector<std::string>& texts);

  /// Takes other rules; every operation counts from 1 again.
  void reset(std::vector<FailRule> rules);
  /// Counts a call and gives the rules that concern it, in their order.
  std::vector<FailRule> nextCall(const std::string& operation);
  /// Whether a connection may be ended in place of an answer.
  bool dropsConnections() const;

private:
  mutable std::mutex mutex_;
  std::vector<FailRule> rules_;
  std::map<std::string, unsigned> calls_;
};

} // namespace zuvi::sandbox
