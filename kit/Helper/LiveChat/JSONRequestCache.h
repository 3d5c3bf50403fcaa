#pragma once

#include <ZuviSDK/Foundation/Error.h>
#include "platform/Foundation/URLSession.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace zuvi {

/// Fetches the template of the chat page's address and keeps it while it is good. `request` comes
/// from the main queue.
class JSONRequestCache : public std::enable_shared_from_this<JSONRequestCache> {
public:
  using Completion =
      std::function<void(std::optional<std::string> templateURL, std::optional<Error> error)>;

  /// A request that still runs is cancelled. A known template comes at once, in this call; else
  /// `handler` comes on a queue of the session, and not at all when the document holds no template.
  /// Returns the task that was started.
  std::shared_ptr<URLSessionDataTask> request(Completion handler);

  /// The last template received.
  std::optional<std::string> templateURL() const;
  /// The last task started; stays when it has ended.
  const std::shared_ptr<URLSessionDataTask>& currentTask() const { return currentTask_; }

private:
  void receive(const std::optional<Data>& data, std::optional<Error> error,
               const Completion& handler);
  std::optional<std::string> store(std::optional<std::string> templateURL);

  mutable std::mutex mutex_; ///< the session's queue writes what the main queue reads
  std::optional<std::string> templateURL_;
  std::shared_ptr<URLSessionDataTask> currentTask_;
};

} // namespace zuvi
