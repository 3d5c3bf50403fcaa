#pragma once

#include <ZuviSDK/Foundation/Data.h>
#include <ZuviSDK/Foundation/Error.h>
#include <ZuviSDK/Foundation/URL.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zuvi {

/// What a request carries: pieces that are sent one after another, each from where it lies, so that
/// a form around a film costs no copy of the film.
using HTTPBody = std::vector<Data>;

/// What to ask of a server.
struct URLRequest {
  /// GET, without headers of its own and without a body.
  explicit URLRequest(URL address) : url(std::move(address)) {}

  URL url;                        ///< http or https; any other scheme fails
  std::string httpMethod = "GET"; ///< sent as it stands
  /// Those of the connection, such as Host, are ignored; one that is no header fails the request.
  std::map<std::string, std::string> allHTTPHeaderFields;
  std::optional<HTTPBody> httpBody; ///< absent: none is sent
  /// Seconds without any progress after which the request fails; absent: the session's.
  std::optional<double> timeoutInterval;
  /// Bytes, uncompressed, beyond which the answer is given up and the request fails.
  std::size_t longestAnswer = std::size_t{16} << 20;
};

/// The head of an answer. Any status is an answer, not an error.
struct URLResponse {
  int statusCode = 0;                         ///< such as 200 or 404
  std::map<std::string, std::string> headers; ///< names in lower case
};

/// What holds for all requests of a session.
struct URLSessionConfiguration {
  /// Seconds without any progress after which a request fails.
  double timeoutIntervalForRequest = 60;
};

/// Where a task is: made but not started, on its way, cancelled but not yet told so, or over.
enum class URLSessionTaskState { Suspended, Running, Canceling, Completed };

/// One request on its way. Cancelling is the only thing to do with it besides starting it.
class URLSessionDataTask {
public:
  virtual ~URLSessionDataTask() = default;
  /// Completed from just before the completion comes.
  virtual URLSessionTaskState state() const = 0;
  /// Starts the request. A task that is never started never completes.
  virtual void resume() = 0;
  /// The completion then gets `NSURLErrorCancelled`, unless it has come already.
  virtual void cancel() = 0;
};

/// HTTP and HTTPS requests over kept connections, HTTP/2 where it is offered. Certificates and host
/// names are always verified, and nothing of a request is sent before; TLS is 1.2 or later with
/// keys that a later theft does not open. Redirects are followed. To another host, or from https to
/// http, they carry no `Authorization` and no body. Answers may come compressed; cookies are kept
/// until the process ends. All members may be called from any thread.
class URLSession {
public:
  /// What an answer brings: data and response, or an error.
  using Completion = std::function<void(
      std::optional<Data> data, std::optional<URLResponse> response, std::optional<Error> error)>;

  /// Opens no connection yet.
  explicit URLSession(const URLSessionConfiguration& configuration);
  /// Cancels what is under way; completions that have not come by then never come.
  ~URLSession();
  URLSession(const URLSession&) = delete;

  /// For requests that need nothing of their own.
  static URLSession& shared();

  /// `completion` comes once, on the session's own queue, which is never the main one. With an
  /// error there is no data, not even what had arrived before it.
  std::shared_ptr<URLSessionDataTask> dataTask(const URLRequest& request, Completion completion);

  /// Why the request can't be sent at all; absent when it can.
  static std::optional<Error> refusal(const URLRequest& request);

  /// A file of further certificate authorities (PEM) that all sessions trust beside the system's;
  /// empty: none. Takes effect for connections made afterwards.
  static void setAdditionalAuthorities(const std::string& pemFile);
  /// What that file held, for others that open connections.
  static Data additionalAuthorities();

private:
  class Transport;
  std::shared_ptr<Transport> transport_;
};

} // namespace zuvi
