#pragma once

#include <map>
#include <string>

namespace zuvi {

using CustomVariables = std::map<std::string, std::string>;

/// Whose chat it is, and who the visitor is.
struct LiveChatConfiguration {
  std::string licenseId;
  std::string groupId = "0";
  std::string name = {};
  std::string email = {};

  bool operator==(const LiveChatConfiguration&) const = default;
};

} // namespace zuvi
