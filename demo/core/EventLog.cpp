#include "demo/core/EventLog.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Foundation/Print.h>
#include "platform/Foundation/JSONSerialization.h"

#include <cmath>
#include <mutex>

namespace zuvi::demo {

namespace {
std::mutex lock; // lines come from several threads
}

EventLog::EventLog() : start_(DispatchQueue::main().now()) {
  setPrintListener([this](const std::string& line) { console(line); });
}

EventLog::~EventLog() {
  setPrintListener(nullptr);
}

bool EventLog::open(const std::string& path) {
  file_.reset(std::fopen(path.c_str(), "w"));
  return file_ != nullptr;
}

double EventLog::elapsed() const {
  return DispatchQueue::main().now() - start_;
}

void EventLog::write(Value::Dictionary event) {
  if (!file_) return;
  event["t"] = elapsed();
  const auto line = JSONSerialization::data(event);
  if (!line) return;
  const std::lock_guard guard(lock);
  std::fprintf(file_.get(), "%s\n", line->string().c_str());
  std::fflush(file_.get());
}

void EventLog::say(const std::string& line) const {
  const std::lock_guard guard(lock);
  const long hundredths = std::lround(elapsed() * 100); // with a point in every locale
  std::printf("[%3ld.%02ld s] %s\n", hundredths / 100, hundredths % 100, line.c_str());
  std::fflush(stdout);
}

void EventLog::screen(const std::string& name) {
  say("screen   " + name);
  write({{"event", "screen"}, {"name", name}});
}

void EventLog::outcome(const std::string& call, const std::optional<std::string>& identityId) {
  say("outcome  " + call + (identityId ? " " + *identityId : ""));
  Value::Dictionary event{{"event", "outcome"}, {"call", call}};
  if (identityId) event["identityId"] = *identityId;
  write(std::move(event));
}

void EventLog::opened(const std::string& url) {
  say("opened   " + url);
  write({{"event", "opened"}, {"url", url}});
}

void EventLog::chat(bool presented) {
  const std::string state = presented ? "presented" : "hidden";
  say("chat     " + state);
  write({{"event", "chat"}, {"state", state}});
}

void EventLog::chatMessage(const std::string& id, const std::string& text) {
  say("chat     a message"); // what it says is between two people
  write({{"event", "chat-message"}, {"id", id}, {"text", text}});
}

void EventLog::console(const std::string& line) {
  write({{"event", "console"}, {"text", line}});
}

} // namespace zuvi::demo
