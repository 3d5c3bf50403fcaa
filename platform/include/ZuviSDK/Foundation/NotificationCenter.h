#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/Value.h>

#include <functional>
#include <memory>
#include <string>

namespace zuvi {

/// Something that happened, by name, with what it carries.
struct Notification {
  std::string name;           ///< under which it is observed
  Value::Dictionary userInfo; ///< empty: the name says it all
};

/// Keeps one observation alive; it ends with this object.
class NotificationObserver {
public:
  /// Observes nothing.
  NotificationObserver() = default;
  /// The observation goes along; what the target observed before ends.
  /// @{
  NotificationObserver(NotificationObserver&&) noexcept = default;
  NotificationObserver& operator=(NotificationObserver&&) noexcept = default;
  /// @}

private:
  friend class NotificationCenter;
  std::shared_ptr<void> registration_;
};

/// Delivers notifications by name to whoever observes them. Main queue only.
class ZUVI_API NotificationCenter {
public:
  /// The one that the kit posts to.
  static NotificationCenter& defaultCenter();

  /// Calls `handler` for each notification of that name until the returned object is gone.
  [[nodiscard]] NotificationObserver observe(const std::string& name,
                                             std::function<void(const Notification&)> handler);
  /// Calls the observers of that name, in the order of their registration, before it returns.
  /// Observers that come or go meanwhile do not disturb it; one that has gone is not called.
  void post(const std::string& name, Value::Dictionary userInfo = {});

private:
  NotificationCenter() = default;
};

} // namespace zuvi
