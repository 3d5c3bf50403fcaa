#pragma once

#include "platform/CoreTelephony/CTCarrier.h"

#include <memory>
#include <optional>

namespace zuvi {

/// Where the carrier is asked for. Main thread.
class CarrierProvider {
public:
  virtual ~CarrierProvider() = default;
  /// Absent without a modem. Answers within a fraction of a second.
  virtual std::optional<CTCarrier> subscriberCellularProvider() = 0;
};

/// Asks the system's modem service.
std::shared_ptr<CarrierProvider> makeModemManagerCarrierProvider();

} // namespace zuvi
