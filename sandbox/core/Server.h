#pragma once

#include "sandbox/core/FailRules.h"
#include "sandbox/core/Merchants.h"
#include "sandbox/core/Result.h"
#include "sandbox/core/store/Records.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zuvi::sandbox {

struct ServerOptions {
  std::uint16_t port = 0; ///< 0 takes a free one
  std::filesystem::path dataFolder;
  std::filesystem::path tlsFolder; ///< empty: plain HTTP
  Merchants merchants = Merchants::samples();
  std::vector<FailRule> failRules;
  std::uint64_t bodyLimit = 256ULL << 20;
  /// Gets one line for each request, on the connection's thread, one at a time.
  std::function<void(const std::string&)> log;
};

/// A request that was answered, or was not on purpose.
struct RequestRecord {
  std::string method;
  std::string path;
  std::string operation; ///< empty for the page and for what no route takes
  std::uint64_t bodySize = 0;
  int status = 0;      ///< 0 when the connection was dropped instead
  std::string message; ///< why a request was refused, as the answer words it
};

/// The whole back end on threads of its own. Every operation is safe on every thread.
class Server {
public:
  static Result<std::unique_ptr<Server>> start(ServerOptions options);
  /// Stops it.
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  /// Ends every connection and returns when nothing runs any more.
  void stop();

  std::uint16_t port() const;
  /// Such as "https://127.0.0.1:8080", without a slash at its end.
  std::string address() const;
  /// What a client must trust; empty without TLS.
  std::filesystem::path certificateAuthority() const;

  /// Other rules from the next request on; calls count from 1 again. A client that keeps a
  /// connection from before may ask again by itself when that one is dropped.
  void setFailRules(std::vector<FailRule> rules);

  Result<Arrivals> arrivals() const;
  /// The bytes of a stored film or picture.
  Result<std::string> file(const StoredFile& file) const;
  /// The latest requests, oldest first; at most a thousand.
  std::vector<RequestRecord> requests() const;

private:
  struct State;
  explicit Server(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

} // namespace zuvi::sandbox
