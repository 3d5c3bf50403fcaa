#pragma once

#include "platform/Foundation/CurlTransfer.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace zuvi {

/// The thread of a session, on which its transfers run and complete.
class CurlTransport : public std::enable_shared_from_this<CurlTransport> {
public:
  CurlTransport();
  ~CurlTransport();

  void launch();
  /// No completion begins after this has returned. From within one, it returns at once and the
  /// thread ends by itself.
  void stop();

  // From any thread.
  void start(std::shared_ptr<CurlTransfer> transfer);
  void cancel(std::shared_ptr<CurlTransfer> transfer);

private:
  using TransferPtr = std::shared_ptr<CurlTransfer>;
  enum class Order { Start, Cancel };
  struct Cleanup {
    void operator()(void* multi) const;
  };

  void give(Order order, TransferPtr transfer);
  void run();
  void obey(Order order, const TransferPtr& transfer);
  void add(const TransferPtr& transfer);
  void finishTransfers();
  void expireTransfers();
  void fail(const TransferPtr& transfer, Error error);
  TransferPtr take(void* handle);
  int millisecondsToWait() const;

  std::unique_ptr<void, Cleanup> multi_;
  std::map<void*, TransferPtr> running_; // by the library's handle; session thread only
  std::mutex mutex_;
  std::vector<std::pair<Order, TransferPtr>> orders_;
  std::atomic<bool> stopping_ = false;
  std::thread thread_;
};

} // namespace zuvi
