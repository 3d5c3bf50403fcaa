#pragma once

#include "platform/CoreTelephony/CTCarrier.h"

#include <memory>
#include <optional>

namespace zuvi {

class CarrierProvider;

/// What is known of the device's mobile line. Main thread.
class CTTelephonyNetworkInfo {
public:
  /// Asked anew at every call; absent on a device without a modem.
  std::optional<CTCarrier> subscriberCellularProvider() const;

  /// Installs the source of the answer; null: the system's modem service, as at start.
  static void setCarrierProvider(std::shared_ptr<CarrierProvider> provider);
};

} // namespace zuvi
