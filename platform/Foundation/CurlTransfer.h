#pragma once

#include "platform/Foundation/CurlAddress.h"
#include "platform/Foundation/CurlHead.h"
#include "platform/Foundation/URLSession.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace zuvi {

/// One request of a session, from its start over its redirects to its completion. Once made it
/// belongs to the session's thread.
class CurlTransfer {
public:
  using Instant = std::chrono::steady_clock::time_point;

  CurlTransfer(URLRequest request, double timeout, URLSession::Completion completion);
  ~CurlTransfer();
  CurlTransfer(const CurlTransfer&) = delete;
  CurlTransfer& operator=(const CurlTransfer&) = delete;

  /// Why the request can't be sent at all.
  static std::optional<Error> refusal(const URLRequest& request);

  bool isStarted() const { return state_ != State::Waiting; }
  /// Whether the completion has been called.
  bool isFinished() const { return state_ == State::Finished; }

  /// Makes the transfer ready for the network; the error when the request can't be sent at all.
  std::optional<Error> start();
  /// The library's handle; null before `start`.
  void* handle() const { return easy_.get(); }

  /// Takes the library's result code. Returns whether a redirect is to be followed, for which the
  /// handle is then ready; else the completion has been called.
  bool follows(int result);
  void fail(Error error);

  /// When the request fails, unless it makes progress before.
  Instant deadline() const { return lastProgress_ + timeout_; }

private:
  enum class State { Waiting, Running, Finished };
  struct Callbacks;
  struct Cleanup {
    void operator()(void* easy) const;
  };
  struct FreeList {
    void operator()(void* list) const;
  };

  void setHeaders();
  void setMethod();
  void setOptions();
  void setAddress();
  Error errorOf(int result) const;
  bool isSafe() const;
  void complete(std::optional<Data> data, std::optional<URLResponse> response,
                std::optional<Error> error);

  State state_ = State::Waiting;
  URLRequest request_;
  std::chrono::milliseconds timeout_;
  URLSession::Completion completion_;
  std::optional<CurlAddress> address_;
  std::unique_ptr<void, Cleanup> easy_;
  std::unique_ptr<void, FreeList> headers_;
  std::string errorText_;
  long long sent_ = 0; ///< bytes of the body that the library has taken
  CurlHead head_;
  std::string body_;
  bool tooLong_ = false;
  bool replayRefused_ = false;
  int sendings_ = 0;
  int redirects_ = 0;
  Instant lastProgress_;
  long long transferred_ = 0;
};

} // namespace zuvi
