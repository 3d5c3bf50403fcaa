#include "kit/Helper/LiveChat/JSONRequestCache.h"

#include <ZuviSDK/Foundation/Print.h>
#include <ZuviSDK/ZVEndpoints.h>
#include "platform/Foundation/JSONSerialization.h"

#include <utility>

namespace zuvi {

std::optional<std::string> JSONRequestCache::templateURL() const {
  const std::lock_guard lock(mutex_);
  return templateURL_;
}

std::optional<std::string> JSONRequestCache::store(std::optional<std::string> templateURL) {
  const std::lock_guard lock(mutex_);
  templateURL_ = std::move(templateURL);
  return templateURL_;
}

std::shared_ptr<URLSessionDataTask> JSONRequestCache::request(Completion handler) {
  if (currentTask_) currentTask_->cancel();
  if (const auto known = templateURL()) {
    handler(known, std::nullopt);
    return nullptr;
  }
  const auto url = URL::fromString(ZVEndpoints::chatTemplateURL());
  if (!url) {
    handler(std::nullopt, Error{NSURLErrorDomain, NSURLErrorBadURL, "The address cannot be used."});
    return nullptr;
  }
  URLRequest request(*url);
  request.longestAnswer = std::size_t{1} << 16; // it is an address
  const std::weak_ptr<JSONRequestCache> weak = weak_from_this();
  currentTask_ = URLSession::shared().dataTask(
      request, [weak, handler = std::move(handler)](const std::optional<Data>& data, const auto&,
                                                    std::optional<Error> error) {
        if (const auto self = weak.lock()) self->receive(data, std::move(error), handler);
      });
  currentTask_->resume();
  return currentTask_;
}

void JSONRequestCache::receive(const std::optional<Data>& data, std::optional<Error> error,
                               const Completion& handler) {
  if (!data) {
    handler(store(std::nullopt), std::move(error));
    return;
  }
  const auto document = JSONSerialization::jsonObject(data->view());
  if (!document) {
    const Error problem{"NSCocoaErrorDomain", 3840, "The answer is not JSON."};
    print("error: " + problem.description);
    handler(store(std::nullopt), problem);
    return;
  }
  const auto* entries = document->dictionary();
  if (auto chatURL = entries ? stringValue(*entries, "chat_url") : std::nullopt)
    handler(store(std::move(chatURL)), std::move(error));
  else
    print("error: Invalid JSON: " + document->description());
}

} // namespace zuvi
