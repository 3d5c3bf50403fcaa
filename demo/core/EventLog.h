#pragma once

#include <ZuviSDK/Foundation/Value.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <string>

namespace zuvi::demo {

/// Tells what happens as it happens: a line a reader understands on the console, and one JSON
/// object a line in the events file, flushed at once.
class EventLog {
public:
  EventLog();
  ~EventLog();
  EventLog(const EventLog&) = delete;

  /// False when the file can't be written.
  bool open(const std::string& path);

  void screen(const std::string& name);
  /// `identityId` absent: the call carries none.
  void outcome(const std::string& call, const std::optional<std::string>& identityId);
  void opened(const std::string& url);
  void chat(bool presented);
  void chatMessage(const std::string& id, const std::string& text);
  /// A line that some part of the program printed. Any thread.
  void console(const std::string& line);

private:
  void write(Value::Dictionary event);
  void say(const std::string& line) const;
  double elapsed() const;

  double start_;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_{nullptr, std::fclose};
};

} // namespace zuvi::demo
