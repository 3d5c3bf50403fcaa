#include "platform/Foundation/CurlTransport.h"

#include "platform/Foundation/CurlErrors.h"

#include <algorithm>
#include <csignal>
#include <new>
#include <utility>

#include <curl/curl.h>

namespace zuvi {

namespace {

void* newMulti() {
  static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
  CURLM* multi = ready == CURLE_OK ? curl_multi_init() : nullptr;
  if (!multi) throw std::bad_alloc();
  return multi;
}

} // namespace

void CurlTransport::Cleanup::operator()(void* multi) const {
  curl_multi_cleanup(multi);
}

CurlTransport::CurlTransport() : multi_(newMulti()) {}

CurlTransport::~CurlTransport() = default;

void CurlTransport::launch() {
  // The thread holds the transport, which may lose its session in the middle of a completion.
  thread_ = std::thread([self = shared_from_this()] { self->run(); });
}

void CurlTransport::stop() {
  stopping_ = true;
  curl_multi_wakeup(multi_.get());
  if (thread_.get_id() == std::this_thread::get_id())
    thread_.detach();
  else
    thread_.join();
}

void CurlTransport::start(std::shared_ptr<CurlTransfer> transfer) {
  give(Order::Start, std::move(transfer));
}

void CurlTransport::cancel(std::shared_ptr<CurlTransfer> transfer) {
  give(Order::Cancel, std::move(transfer));
}

void CurlTransport::give(Order order, TransferPtr transfer) {
  {
    const std::lock_guard lock(mutex_);
    orders_.emplace_back(order, std::move(transfer));
  }
  curl_multi_wakeup(multi_.get());
}

void CurlTransport::run() {
  sigset_t brokenPipe;
  sigemptyset(&brokenPipe);
  sigaddset(&brokenPipe, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);

  while (!stopping_) {
    std::vector<std::pair<Order, TransferPtr>> orders;
    {
      const std::lock_guard lock(mutex_);
      orders.swap(orders_);
    }
    for (const auto& [order, transfer] : orders)
      if (!stopping_) obey(order, transfer);
    int count = 0;
    curl_multi_perform(multi_.get(), &count);
    finishTransfers();
    expireTransfers();
    if (!stopping_) curl_multi_poll(multi_.get(), nullptr, 0, millisecondsToWait(), nullptr);
  }

  for (const auto& [handle, transfer] : running_)
    curl_multi_remove_handle(multi_.get(), handle);
  running_.clear();
}

void CurlTransport::obey(Order order, const TransferPtr& transfer) {
  if (transfer->isFinished()) return;
  if (order == Order::Cancel)
    fail(transfer, urlError(NSURLErrorCancelled, "cancelled"));
  else if (!transfer->isStarted()) {
    if (auto error = transfer->start())
      transfer->fail(std::move(*error));
    else
      add(transfer);
  }
}

void CurlTransport::add(const TransferPtr& transfer) {
  running_.emplace(transfer->handle(), transfer);
  curl_multi_add_handle(multi_.get(), transfer->handle());
}

void CurlTransport::finishTransfers() {
  // The messages do not outlive the removal of a handle: read them all first.
  std::vector<std::pair<void*, CURLcode>> results;
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &left))
    if (message->msg == CURLMSG_DONE)
      results.emplace_back(message->easy_handle, message->data.result);
  for (const auto& [handle, result] : results) {
    if (stopping_) return;
    const auto transfer = take(handle);
    if (transfer && transfer->follows(result)) add(transfer);
  }
}

void CurlTransport::expireTransfers() {
  const auto now = std::chrono::steady_clock::now();
  std::vector<TransferPtr> expired;
  for (const auto& [handle, transfer] : running_)
    if (transfer->deadline() <= now) expired.push_back(transfer);
  for (const auto& transfer : expired)
    if (!stopping_) fail(transfer, urlError(NSURLErrorTimedOut, "no progress for too long"));
}

void CurlTransport::fail(const TransferPtr& transfer, Error error) {
  take(transfer->handle());
  transfer->fail(std::move(error));
}

CurlTransport::TransferPtr CurlTransport::take(void* handle) {
  const auto entry = running_.find(handle);
  if (entry == running_.end()) return nullptr;
  curl_multi_remove_handle(multi_.get(), handle);
  auto transfer = std::move(entry->second);
  running_.erase(entry);
  return transfer;
}

int CurlTransport::millisecondsToWait() const {
  using namespace std::chrono;
  milliseconds wait = minutes(10);
  const auto now = steady_clock::now();
  for (const auto& [handle, transfer] : running_)
    wait = std::min(wait, ceil<milliseconds>(transfer->deadline() - now));
  return static_cast<int>(std::max(wait, milliseconds(0)).count());
}

} // namespace zuvi
