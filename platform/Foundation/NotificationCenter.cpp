#include <ZuviSDK/Foundation/NotificationCenter.h>

#include "platform/Dispatch/AssertMainQueue.h"

#include <map>
#include <utility>
#include <vector>

namespace zuvi {

namespace {

using Handler = std::function<void(const Notification&)>;
// The observer owns the registration alone; a call in progress holds only the handler.
using Registration = std::shared_ptr<Handler>;
using Observers = std::multimap<std::string, std::weak_ptr<Registration>>;

Observers& allObservers() {
  static Observers observers;
  return observers;
}

} // namespace

NotificationCenter& NotificationCenter::defaultCenter() {
  static NotificationCenter center;
  return center;
}

NotificationObserver NotificationCenter::observe(const std::string& name,
                                                 std::function<void(const Notification&)> handler) {
  assertMainQueue("The notification centre");
  auto& observers = allObservers();
  const auto [first, last] = observers.equal_range(name);
  for (auto entry = first; entry != last;)
    entry = entry->second.expired() ? observers.erase(entry) : std::next(entry);

  auto registration = std::make_shared<Registration>(std::make_shared<Handler>(std::move(handler)));
  observers.emplace(name, registration);
  NotificationObserver observer;
  observer.registration_ = std::move(registration);
  return observer;
}

void NotificationCenter::post(const std::string& name, Value::Dictionary userInfo) {
  assertMainQueue("The notification centre");
  const Notification notification{name, std::move(userInfo)};
  std::vector<std::weak_ptr<Registration>> observers;
  const auto [first, last] = allObservers().equal_range(name);
  for (auto entry = first; entry != last; ++entry)
    observers.push_back(entry->second);
  for (const auto& observer : observers) {
    auto registration = observer.lock();
    if (!registration) continue;
    const std::shared_ptr<Handler> handler = *registration;
    registration.reset(); // so that an observer that leaves within its call has left at once
    (*handler)(notification);
  }
}

} // namespace zuvi
