#include "platform/CoreTelephony/CTTelephonyNetworkInfo.h"
#include "platform/CoreTelephony/CarrierProvider.h"
#include "tests/support/ScopedEnvironment.h"

#include <memory>

#include <gio/gio.h>
#include <gtest/gtest.h>

namespace zuvi {
namespace {

TEST(CarrierTest, ThereIsNoneWithoutAModemServiceOrABus) {
  GTestDBus* bus = g_test_dbus_new(G_TEST_DBUS_NONE);
  g_test_dbus_up(bus);
  const std::string address = g_test_dbus_get_bus_address(bus);
  for (const std::string& each : {address, std::string("unix:path=/nowhere/at/all")}) {
    const test::ScopedEnvironment system("DBUS_SYSTEM_BUS_ADDRESS", each);
    EXPECT_FALSE(CTTelephonyNetworkInfo().subscriberCellularProvider()) << each;
  }
  g_test_dbus_stop(bus);
  g_object_unref(bus);
}

} // namespace
} // namespace zuvi
