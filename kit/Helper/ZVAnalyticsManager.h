#pragma once

#include <ZuviSDK/Foundation/Value.h>

#include <functional>
#include <optional>
#include <string>

namespace zuvi {

/// Reports user actions to the tracking service, one request each. Nothing waits for the answer,
/// and failures are ignored.
class ZVAnalyticsManager {
public:
  /// An absent event does nothing. The kit's own properties replace the caller's.
  static void track(const std::optional<std::string>& event,
                    const std::optional<Value::Dictionary>& properties = std::nullopt);

  /// Gets each event with the properties that are sent; empty: none.
  using Listener = std::function<void(const std::string& event, const Value::Dictionary&)>;
  static void setListener(Listener listener);

private:
  static void sendMixpanelEvent(const std::string& event,
                                const std::optional<Value::Dictionary>& properties);
  static void sendMixapnelRequest(const Value::Dictionary& parameters);
};

} // namespace zuvi
