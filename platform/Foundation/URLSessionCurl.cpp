#include "platform/Foundation/URLSession.h"

#include "platform/Foundation/CurlAuthorities.h"
#include "platform/Foundation/CurlTransport.h"

#include <utility>

namespace zuvi {

namespace {

class DataTask final : public URLSessionDataTask {
public:
  DataTask(std::weak_ptr<CurlTransport> transport, std::shared_ptr<CurlTransfer> transfer)
      : transport_(std::move(transport)), transfer_(std::move(transfer)) {}

  void resume() override {
    if (const auto transport = transport_.lock()) transport->start(transfer_);
  }
  void cancel() override {
    if (const auto transport = transport_.lock()) transport->cancel(transfer_);
  }

private:
  const std::weak_ptr<CurlTransport> transport_;
  const std::shared_ptr<CurlTransfer> transfer_;
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
  static URLSession session{URLSessionConfiguration()};
  return session;
}

std::shared_ptr<URLSessionDataTask> URLSession::dataTask(const URLRequest& request,
                                                         Completion completion) {
  const double timeout = request.timeoutInterval.value_or(transport_->timeout);
  auto transfer = std::make_shared<CurlTransfer>(request, timeout, std::move(completion));
  return std::make_shared<DataTask>(transport_, std::move(transfer));
}

void URLSession::setAdditionalAuthorities(const std::string& pemFile) {
  CurlAuthorities::setAdditional(pemFile);
}

Data URLSession::additionalAuthorities() {
  return CurlAuthorities::additional();
}

} // namespace zuvi
