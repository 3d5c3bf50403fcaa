#pragma once

#include <optional>
#include <string>

namespace zuvi {

/// By how many degrees the pictures of the camera at that device file have to be turned, against
/// the clock, because of how its sensor is mounted; 0 when the driver does not say.
int sensorRotation(const std::string& path);

/// The same of a property's text, such as "90"; absent when it is none of 0, 90, 180 and 270.
std::optional<int> sensorRotationFrom(const std::string& text);

} // namespace zuvi
