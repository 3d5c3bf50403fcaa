#include "platform/CoreTelephony/CTTelephonyNetworkInfo.h"
#include "platform/CoreTelephony/CarrierProvider.h"
#include "platform/Dispatch/VirtualTime.h"
#include "platform/Foundation/NotificationCenter.h"
#include "platform/Foundation/Timer.h"
#include "tests/support/ScopedEnvironment.h"

#include <gio/gio.h>
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
  NotificationCenter center;
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
