#pragma once

#include <ZuviSDK/Foundation/Error.h>
#include "platform/Foundation/URLSession.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace zuvi {

/// Fetches the template of the chat page's address and keeps it while it is valid. Call `request`
/// on the main queue.
class JSONRequestCache : public std::enable_shared_from_this<JSONRequestCache> {
public:
  using Completion =
      std::function<void(std::optional<std::string> templateURL, std::optional<Error> error)>;

  /// Cancels a request that still runs. With a known template `handler` is called at once, in this
  /// call; else on a queue of the session, and never when the document has no template. Returns the
  /// task that was started.
  std::shared_ptr<URLSessionDataTask> request(Completion handler);

  /// The last template received.
  std::optional<std::string> templateURL() const;
  /// The last task that was started, also after it has ended.
  const std::shared_ptr<URLSessionDataTask>& currentTask() const { return currentTask_; }

private:
  void receive(const std::optional<Data>& data, std::optional<Error> error,
               const Completion& handler);
  std::optional<std::string> store(std::optional<std::string> templateURL);

  mutable std::mutex mutex_; ///< the session's queue writes, the main queue reads
  std::optional<std::string> templateURL_;
  std::shared_ptr<URLSessionDataTask> currentTask_;
};

} // namespace zuvi
