#pragma once

#include "platform/CoreTelephony/CTCarrier.h"

#include <memory>
#include <optional>

namespace zuvi {

/// Where the carrier is asked for. Main thread.
class CarrierProvider {
public:
  virtual ~CarrierProvider() = default;
  /// Absent without a modem, or as long as nothing is known. Does not wait.
  virtual std::optional<CTCarrier> subscriberCellularProvider() = 0;
};

/// Tells what the system's modem service said last, which each call has asked again meanwhile.
std::shared_ptr<CarrierProvider> makeModemManagerCarrierProvider();

} // namespace zuvi
