#pragma once

#include <ZuviSDK/CustomVariables.h>

#include <string>

namespace zuvi {

/// The chat's account and team, and the visitor.
struct LiveChatConfiguration {
  std::string licenseId;     ///< of the chat's account
  std::string groupId = "0"; ///< the team that answers; "0" unless the host names one
  std::string name = {};     ///< of the visitor; empty: unknown
  std::string email = {};    ///< of the visitor; empty: unknown

  /// Equal when all fields are.
  bool operator==(const LiveChatConfiguration&) const = default;
};

} // namespace zuvi
