#pragma once

#include <map>
#include <string>

namespace zuvi {

/// What the support chat's page is told about the visitor, by name.
using CustomVariables = std::map<std::string, std::string>;

} // namespace zuvi
