#pragma once

#include <ZuviSDK/Foundation/Value.h>

#include <optional>
#include <string>

namespace zuvi {

/// Reads an XML property list from a file. Absent when the file cannot be read or is none.
std::optional<Value> propertyListFromFile(const std::string& path);

} // namespace zuvi
