#pragma once

#include <optional>
#include <string>

namespace zuvi {

/// The provider of the subscriber's mobile line.
struct CTCarrier {
  std::optional<std::string> carrierName;
};

} // namespace zuvi
