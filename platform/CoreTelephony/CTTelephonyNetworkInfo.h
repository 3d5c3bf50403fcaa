#pragma once

#include "platform/CoreTelephony/CTCarrier.h"

#include <memory>
#include <optional>

namespace zuvi {

class CarrierProvider;

/// What is known of the device's mobile line. Main thread.
class CTTelephonyNetworkInfo {
public:
  /// As it was known at the call before, which does not wait for an answer; absent on a device
  /// without a modem, and at the first call.
  std::optional<CTCarrier> subscriberCellularProvider() const;

  /// Installs the source of the answer; null: the system's modem service, as at start.
  static void setCarrierProvider(std::shared_ptr<CarrierProvider> provider);
};

} // namespace zuvi
