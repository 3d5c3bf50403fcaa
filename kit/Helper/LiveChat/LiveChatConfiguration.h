#pragma once

#include <ZuviSDK/CustomVariables.h>

#include <string>

namespace zuvi {

/// Whose chat it is, and who the visitor is.
struct LiveChatConfiguration {
  std::string licenseId;     ///< of the chat's account
  std::string groupId = "0"; ///< the team that answers; "0" unless the host names one
  std::string name = {};     ///< of the visitor; empty: unknown
  std::string email = {};    ///< of the visitor; empty: unknown

  /// Equal when all fields are.
  bool operator==(const LiveChatConfiguration&) const = default;
};

} // namespace zuvi
