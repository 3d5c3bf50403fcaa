#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/Foundation/Timer.h>
#include "platform/CoreTelephony/CTTelephonyNetworkInfo.h"
#include "platform/CoreTelephony/CarrierProvider.h"
#include "testing/Dispatch/VirtualTime.h"
#include "testing/desktop/BusServiceGio.h"
#include "testing/support/ScopedEnvironment.h"

#include <gtest/gtest.h>

namespace zuvi {
namespace {

TEST(TimerTest, LeavesOutWhatItMissed) {
  auto& queue = DispatchQueue::main();
  const VirtualTime time;
  const auto clock = std::make_shared<VirtualClock>();
  queue.setClock(clock);
  int fired = 0;
  const auto timer = Timer::scheduled(1.0, Timer::Repeats::Yes, [&] { ++fired; });
  clock->set(clock->now() + 5.5);
  queue.runDue();
  EXPECT_EQ(fired, 1);
  EXPECT_DOUBLE_EQ(queue.nextDeadline() - queue.now(), 0.5);
}

TEST(TimerTest, EndsWhenInvalidatedOrDroppedAlsoFromWithin) {
  VirtualTime time;
  int fired = 0;
  std::shared_ptr<Timer> once;
  once = Timer::scheduled(1, Timer::Repeats::No, [&] { ++fired; });
  std::shared_ptr<Timer> self;
  const auto held = std::make_shared<int>();
  self = Timer::scheduled(1, Timer::Repeats::Yes, [&, held] {
    EXPECT_TRUE(self->isValid());
    self->invalidate();
    self.reset();
    fired += *held + 10;
  });
  EXPECT_TRUE(once->isValid());
  time.advance(5);
  EXPECT_EQ(fired, 11);
  EXPECT_EQ(held.use_count(), 1);
}

TEST(NotificationCenterTest, ObserversMayComeAndGoDuringAPost) {
  auto& center = NotificationCenter::defaultCenter();
  std::string log;
  std::optional<NotificationObserver> self;
  std::optional<NotificationObserver> late;
  std::optional<NotificationObserver> next;
  self = center.observe("n", [&](const Notification&) {
    log += "1";
    self.reset();
    next.reset();
    late = center.observe("n", [&](const Notification&) { log += "late"; });
    center.post("n");
  });
  next = center.observe("n", [&](const Notification&) { log += "never"; });
  center.post("n");
  EXPECT_EQ(log, "1late");
}

TEST(CarrierTest, IsTheModemServicesWordOnceItHasAnswered) {
  const std::unique_ptr<GTestDBus, decltype(&g_object_unref)> bus(g_test_dbus_new(G_TEST_DBUS_NONE),
                                                                  g_object_unref);
  g_test_dbus_up(bus.get());
  const std::string address = g_test_dbus_get_bus_address(bus.get());
  std::optional<test::BusService> modems(test::BusService::Object{
      address, "org.freedesktop.ModemManager1", "/org/freedesktop/ModemManager1",
      R"(<node><interface name="org.freedesktop.DBus.ObjectManager"><method
         name="GetManagedObjects"><arg type="a{oa{sa{sv}}}" direction="out"/></method>
         </interface></node>)",
      [] {
        return g_variant_parse(G_VARIANT_TYPE("(a{oa{sa{sv}}})"),
                               "({objectpath '/org/freedesktop/ModemManager1/Modem/0': "
                               "{'org.freedesktop.ModemManager1.Modem.Modem3gpp': {'OperatorName': "
                               "<'Ría Móvil'>}}},)",
                               nullptr, nullptr, nullptr);
      }});
  const test::ScopedEnvironment system("DBUS_SYSTEM_BUS_ADDRESS", address);
  CTTelephonyNetworkInfo::setCarrierProvider(nullptr);
  const CTTelephonyNetworkInfo info;
  EXPECT_FALSE(info.subscriberCellularProvider()) << "the first call waits for nobody";
  VirtualTime time;
  std::optional<CTCarrier> carrier;
  EXPECT_TRUE(
      time.waitUntil([&] { return (carrier = info.subscriberCellularProvider()).has_value(); }));
  EXPECT_EQ(carrier.value_or(CTCarrier{}).carrierName, "Ría Móvil");
  CTTelephonyNetworkInfo::setCarrierProvider(nullptr);
  modems.reset();
  g_test_dbus_stop(bus.get());
}

} // namespace
} // namespace zuvi
