#pragma once

#include <ZuviSDK/Foundation/Value.h>

#include <optional>
#include <string>

namespace zuvi {

/// Reports user actions, one request each, and forgets them. Nothing waits for it and no failure
/// shows.
class ZVAnalyticsManager {
public:
  /// An absent event does nothing. The kit's own properties win over the caller's.
  static void track(const std::optional<std::string>& event,
                    const std::optional<Value::Dictionary>& properties = std::nullopt);

private:
  static void sendMixpanelEvent(const std::string& event,
                                const std::optional<Value::Dictionary>& properties);
  static void sendMixapnelRequest(const Value::Dictionary& parameters);
};

} // namespace zuvi
