#include "platform/Foundation/URLSession.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include "platform/Foundation/CurlTransport.h"
#include "platform/Foundation/CurlTrust.h"

#include <atomic>
#include <utility>

namespace zuvi {

namespace {

/// The transfer belongs to the session's thread; this is what other threads may see of it.
using SharedState = std::shared_ptr<std::atomic<URLSessionTaskState>>;

class DataTask final : public URLSessionDataTask {
public:
  DataTask(std::weak_ptr<CurlTransport> transport, std::shared_ptr<CurlTransfer> transfer,
           SharedState state)
      : transport_(std::move(transport)), transfer_(std::move(transfer)), state_(std::move(state)) {
  }

  URLSessionTaskState state() const override { return *state_; }
  void resume() override {
    change(URLSessionTaskState::Suspended, URLSessionTaskState::Running);
    if (const auto transport = transport_.lock()) transport->start(transfer_);
  }
  void cancel() override {
    change(URLSessionTaskState::Suspended, URLSessionTaskState::Canceling);
    change(URLSessionTaskState::Running, URLSessionTaskState::Canceling);
    if (const auto transport = transport_.lock()) transport->cancel(transfer_);
  }

private:
  void change(URLSessionTaskState from, URLSessionTaskState to) {
    state_->compare_exchange_strong(from, to);
  }

  const std::weak_ptr<CurlTransport> transport_;
  const std::shared_ptr<CurlTransfer> transfer_;
  const SharedState state_;
};

} // namespace

class URLSession::Transport : public CurlTransport {
public:
  explicit Transport(double usualTimeout) : timeout(usualTimeout) {}
  const double timeout;
};

URLSession::URLSession(const URLSessionConfiguration& configuration)
    : transport_(std::make_shared<Transport>(configuration.timeoutIntervalForRequest)) {
  transport_->launch();
}

URLSession::~URLSession() {
  transport_->stop();
}

URLSession& URLSession::shared() {
  // Made before and so ended after the session at exit: work there that waits for an answer must
  // hear first that none will come.
  DispatchQueue::global();
  static URLSession session{URLSessionConfiguration()};
  return session;
}

std::shared_ptr<URLSessionDataTask> URLSession::dataTask(const URLRequest& request,
                                                         Completion completion) {
  const double timeout = request.timeoutInterval.value_or(transport_->timeout);
  const auto state =
      std::make_shared<std::atomic<URLSessionTaskState>>(URLSessionTaskState::Suspended);
  auto transfer = std::make_shared<CurlTransfer>(
      request, timeout,
      [state, completion = std::move(completion)](std::optional<Data> data,
                                                  std::optional<URLResponse> response,
                                                  std::optional<Error> error) {
        *state = URLSessionTaskState::Completed;
        if (completion) completion(std::move(data), std::move(response), std::move(error));
      });
  return std::make_shared<DataTask>(transport_, std::move(transfer), state);
}

std::optional<Error> URLSession::refusal(const URLRequest& request) {
  return CurlTransfer::refusal(request);
}

void URLSession::setAdditionalAuthorities(const std::string& pemFile) {
  CurlTrust::setAdditional(pemFile);
}

Data URLSession::additionalAuthorities() {
  return CurlTrust::additional();
}

} // namespace zuvi
