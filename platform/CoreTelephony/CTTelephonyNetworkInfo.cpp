#include "platform/CoreTelephony/CTTelephonyNetworkInfo.h"

#include "platform/CoreTelephony/CarrierProvider.h"

#include <utility>

namespace zuvi {

namespace {

std::shared_ptr<CarrierProvider>& installedProvider() {
  static std::shared_ptr<CarrierProvider> provider;
  return provider;
}

} // namespace

std::optional<CTCarrier> CTTelephonyNetworkInfo::subscriberCellularProvider() const {
  auto& provider = installedProvider();
  if (!provider) provider = makeModemManagerCarrierProvider();
  return provider->subscriberCellularProvider();
}

void CTTelephonyNetworkInfo::setCarrierProvider(std::shared_ptr<CarrierProvider> provider) {
  installedProvider() = std::move(provider);
}

} // namespace zuvi
