#pragma once

#include <map>
#include <string>

namespace zuvi {

/// Variables about the visitor for the support chat's page, by name.
using CustomVariables = std::map<std::string, std::string>;

} // namespace zuvi
