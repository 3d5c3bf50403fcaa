#pragma once

#include "sandbox/core/http/HttpServer.h"

#include <map>
#include <mutex>
#include <stdexcept>
#include <vector>

namespace zuvi::test {

using Request = sandbox::Request;

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
};

/// An HTTP server on the loopback interface, with a port of its own, for the length of a test.
class LoopbackServer {
public:
  /// Called when a request has arrived whole, on a thread of its connection. It may block there.
  using Handler = std::function<Reply(const Request&)>;

  /// With credentials it speaks HTTPS.
  explicit LoopbackServer(Handler handler,
                          const std::optional<sandbox::TlsCredentials>& tls = std::nullopt,
                          unsigned idleSeconds = 60)
      : handler_(std::move(handler)), scheme_(tls ? "https://" : "http://") {
    sandbox::HttpOptions options;
    options.tls = tls;
    options.idleSeconds = idleSeconds;
    server_ = *sandbox::HttpServer::listen(std::move(options));
    if (!server_->serve([this](const Request& request) { return answer(request); }))
      throw std::runtime_error("the loopback server does not start");
  }

  /// The address of `path`, which begins with a slash.
  std::string url(const std::string& path, const std::string& host = "127.0.0.1") const {
    return scheme_ + host + ':' + std::to_string(server_->port()) + path;
  }

  /// What has arrived whole so far.
  std::vector<Request> requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
  }

private:
  sandbox::Response answer(const Request& request) {
    {
      const std::lock_guard lock(mutex_);
      requests_.push_back(request);
    }
    const Reply reply = handler_(request);
    sandbox::Response response{reply.status, "", reply.body, {}, {}, {}};
    response.headers.assign(reply.headers.begin(), reply.headers.end());
    if (reply.mode == Reply::Mode::NeverAnswer) request.wait({});
    if (reply.mode == Reply::Mode::CutBody)
      response.delivery = sandbox::Delivery::cutInBody;
    else if (reply.mode != Reply::Mode::Normal)
      response.delivery = sandbox::Delivery::dropped;
    return response;
  }

  Handler handler_;
  std::string scheme_;
  mutable std::mutex mutex_;
  std::vector<Request> requests_;
  std::unique_ptr<sandbox::HttpServer> server_; // ends first
};

} // namespace zuvi::test
