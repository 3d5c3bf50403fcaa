#pragma once

#include "tests/support/Certificates.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zuvi::test {

struct Request {
  std::string method;
  std::string path;                           // as it was sent
  std::string query;                          // as it was sent, without the question mark
  std::map<std::string, std::string> headers; // names in lower case
  std::string body;
};

struct Reply {
  enum class Mode {
    Normal,
    DropConnection, // close before a word of the answer
    CutBody,        // close after half of the body
    NeverAnswer,    // keep the connection open and stay silent
  };

  int status = 200;
  std::map<std::string, std::string> headers = {};
  std::string body = {};
  Mode mode = Mode::Normal;
  /// If set, gives the body part by part in place of `body`; an empty part ends it.
  std::function<std::string()> nextPart = nullptr;
};

/// An HTTP server on the loopback interface, with a port of its own, for the length of a test.
class LoopbackServer {
public:
  /// Called when a request has arrived whole, on a thread of its connection. It may block there.
  using Handler = std::function<Reply(const Request&)>;

  /// With an identity it speaks HTTPS.
  explicit LoopbackServer(Handler handler, const std::optional<Identity>& identity = std::nullopt);
  /// Closes every connection.
  ~LoopbackServer();
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  std::uint16_t port() const;
  /// The address of `path`, which begins with a slash.
  std::string url(const std::string& path, const std::string& host = "127.0.0.1") const;

  /// What has arrived whole so far.
  std::vector<Request> requests() const;
  /// How many connections were made so far.
  int connectionCount() const;

private:
  struct Daemon;
  std::unique_ptr<Daemon> daemon_;
};

} // namespace zuvi::test
