#pragma once

#include "sandbox/core/Result.h"
#include "sandbox/core/http/Request.h"
#include "sandbox/core/http/Response.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zuvi::sandbox {

/// Key and certificate of the server, both as PEM text.
struct TlsCredentials {
  std::string key;
  std::string certificate;
};

struct HttpOptions {
  std::uint16_t port = 0; ///< 0 takes a free one
  std::optional<TlsCredentials> tls;
  std::uint64_t bodyLimit = 256ULL << 20;
  unsigned idleSeconds = 60;        ///< until a connection that says nothing is closed
  std::filesystem::path bodyFolder; ///< where long bodies wait; empty: in memory
  /// Each answer ends its connection, so that no client takes a dropped one for a stale one and
  /// silently asks again.
  bool closeConnections = false;
};

/// HTTP on the loopback interface only, for at most 64 connections at a time. Each connection has
/// its own thread, so a handler may block; it runs on that thread.
class HttpServer {
public:
  using Handler = std::function<Response(const Request&)>;
  /// Decides about a request by its head; absent: it goes to the handler.
  using Admission = std::function<std::optional<Response>(const Request&)>;

  /// Takes the port; nothing is answered before `serve`.
  static Result<std::unique_ptr<HttpServer>> listen(HttpOptions options);
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  /// Called once. Of what is not admitted no body is kept.
  Result<Done> serve(Handler handler, Admission admission = {});

  std::uint16_t port() const;
  void closeConnections(bool close);
  /// Ends every connection, also those that wait. Nothing runs in the handler afterwards.
  void stop();

private:
  struct State;
  explicit HttpServer(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

} // namespace zuvi::sandbox
