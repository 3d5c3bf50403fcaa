#pragma once

#include <string>

namespace zuvi {

/// Whose chat it is, and who the visitor is.
struct LiveChatConfiguration {
  std::string licenseId;
  std::string groupId = "0";
  std::string name = {};
  std::string email = {};

  bool operator==(const LiveChatConfiguration&) const = default;
};

} // namespace zuvi
