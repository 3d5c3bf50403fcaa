#include "sandbox/core/FailRules.h"

#include "sandbox/core/api/Operations.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>

namespace zuvi::sandbox {
namespace {

constexpr double longestDelay = 86400;

template <typename Number> std::optional<Number> number(std::string_view text) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

bool readCalls(std::string_view text, FailRule& rule) {
  if (text == "*") {
    rule.last = std::numeric_limits<unsigned>::max();
    return true;
  }
  const auto dash = text.find('-');
  const auto first = number<unsigned>(text.substr(0, dash));
  const auto last =
      dash == std::string_view::npos ? first : number<unsigned>(text.substr(dash + 1));
  if (!first || !last || *first == 0 || *last < *first) return false;
  rule.first = *first;
  rule.last = *last;
  return true;
}

bool readAction(std::string_view text, FailRule& rule) {
  static constexpr std::pair<std::string_view, FailAction> words[] = {
      {"drop", FailAction::drop},         {"cut", FailAction::cut},
      {"truncate", FailAction::truncate}, {"nonjson", FailAction::nonJson},
      {"empty", FailAction::empty},       {"never", FailAction::never}};
  for (const auto& [word, action] : words) {
    if (text != word) continue;
    rule.action = action;
    return true;
  }
  const auto equals = text.find('=');
  if (equals == std::string_view::npos) return false;
  const auto key = text.substr(0, equals);
  const auto value = text.substr(equals + 1);
  if (key == "message" || key == "json") {
    rule.action = key == "json" ? FailAction::json : FailAction::message;
    rule.text = value;
    return true;
  }
  if (key == "status") {
    const auto status = number<int>(value);
    rule.action = FailAction::status;
    rule.status = status.value_or(0);
    return rule.status >= 200 && rule.status <= 599;
  }
  if (key == "delay") {
    const auto seconds = number<double>(value);
    if (!seconds || !(*seconds >= 0 && *seconds <= longestDelay)) return false;
    rule.action = FailAction::delay;
    rule.delay = std::chrono::milliseconds(static_cast<long>(*seconds * 1000));
    return true;
  }
  return false;
}

} // namespace

Result<FailRule> FailRule::parse(std::string_view text) {
  const auto wrong = [&](const std::string& what) {
    return Error{"the rule \"" + std::string(text) + "\" " + what};
  };
  const auto first = text.find(':');
  const auto second = first == std::string_view::npos ? first : text.find(':', first + 1);
  if (second == std::string_view::npos) return wrong("is not OPERATION:WHICH:ACTION");
  FailRule rule;
  rule.operation = text.substr(0, first);
  const auto& names = operationNames();
  if (std::find(names.begin(), names.end(), rule.operation) == names.end())
    return wrong("names no operation");
  if (!readCalls(text.substr(first + 1, second - first - 1), rule))
    return wrong("names its calls by neither a number, a range such as 2-4, nor *");
  if (!readAction(text.substr(second + 1), rule)) return wrong("has an action that is not known");
  return rule;
}

Result<std::vector<FailRule>> FailPlan::parse(const std::vector<std::string>& texts) {
  std::vector<FailRule> rules;
  for (const auto& text : texts) {
    auto rule = FailRule::parse(text);
    if (!rule) return rule.error();
    rules.push_back(std::move(*rule));
  }
  return rules;
}

void FailPlan::reset(std::vector<FailRule> rules) {
  const std::lock_guard lock(mutex_);
  rules_ = std::move(rules);
  calls_.clear();
}

std::vector<FailRule> FailPlan::nextCall(const std::string& operation) {
  const std::lock_guard lock(mutex_);
  const unsigned call = ++calls_[operation];
  std::vector<FailRule> matching;
  for (const FailRule& rule : rules_)
    if (rule.operation == operation && call >= rule.first && call <= rule.last)
      matching.push_back(rule);
  return matching;
}

bool FailPlan::dropsConnections() const {
  const std::lock_guard lock(mutex_);
  return std::any_of(rules_.begin(), rules_.end(), [](const FailRule& rule) {
    return rule.action == FailAction::drop || rule.action == FailAction::never;
  });
}

} // namespace zuvi::sandbox
