#include "platform/CoreTelephony/CTTelephonyNetworkInfo.h"
#include "platform/CoreTelephony/CarrierProvider.h"
#include "platform/Dispatch/VirtualTime.h"
#include "platform/Foundation/NotificationCenter.h"
#include "platform/Foundation/Timer.h"
#include "tests/support/ScopedEnvironment.h"

#include <atomic>
#include <future>
#include <thread>

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

/// A modem service on a bus of its own, which is the system bus as long as this object lives.
class ModemService {
public:
  ModemService() {
    g_test_dbus_up(daemon_);
    thread_ = std::thread([this] { serve(); });
    ready_.get_future().wait();
  }
  ~ModemService() {
    ending_ = true;
    g_main_context_wakeup(context_);
    thread_.join();
    g_test_dbus_stop(daemon_);
    g_object_unref(daemon_);
    g_main_context_unref(context_);
  }
  ModemService(const ModemService&) = delete;
  std::string address() const { return g_test_dbus_get_bus_address(daemon_); }

private:
  void serve() {
    g_main_context_push_thread_default(context_);
    auto* bus = g_dbus_connection_new_for_address_sync(
        address().c_str(),
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
    GDBusInterfaceVTable table{};
    table.method_call = [](GDBusConnection*, const char*, const char*, const char*, const char*,
                           GVariant*, GDBusMethodInvocation* invocation, gpointer) {
      const char* answer =
          "({objectpath '/org/freedesktop/ModemManager1/Modem/0': "
          "{'org.freedesktop.ModemManager1.Modem.Modem3gpp': {'OperatorName': <'Ría Móvil'>}}},)";
      g_dbus_method_invocation_return_value(
          invocation,
          g_variant_parse(G_VARIANT_TYPE("(a{oa{sa{sv}}})"), answer, nullptr, nullptr, nullptr));
    };
    auto* node = g_dbus_node_info_new_for_xml(
        R"(<node><interface name="org.freedesktop.DBus.ObjectManager"><method
           name="GetManagedObjects"><arg type="a{oa{sa{sv}}}" direction="out"/></method>
           </interface></node>)",
        nullptr);
    g_dbus_connection_register_object(bus, "/org/freedesktop/ModemManager1", node->interfaces[0],
                                      &table, nullptr, nullptr, nullptr);
    g_bus_own_name_on_connection(
        bus, "org.freedesktop.ModemManager1", G_BUS_NAME_OWNER_FLAGS_NONE,
        [](GDBusConnection*, const char*, gpointer self) {
          static_cast<ModemService*>(self)->ready_.set_value();
        },
        nullptr, this, nullptr);
    while (!ending_)
      g_main_context_iteration(context_, TRUE);
    g_dbus_connection_close_sync(bus, nullptr, nullptr);
    g_object_unref(bus);
    g_dbus_node_info_unref(node);
    g_main_context_pop_thread_default(context_);
  }

  GTestDBus* daemon_ = g_test_dbus_new(G_TEST_DBUS_NONE);
  GMainContext* context_ = g_main_context_new();
  std::promise<void> ready_;
  std::atomic<bool> ending_ = false;
  std::thread thread_;
};

TEST(CarrierTest, IsTheModemServicesWordOnceItHasAnswered) {
  const ModemService service;
  const test::ScopedEnvironment system("DBUS_SYSTEM_BUS_ADDRESS", service.address());
  CTTelephonyNetworkInfo::setCarrierProvider(nullptr);
  const CTTelephonyNetworkInfo info;
  EXPECT_FALSE(info.subscriberCellularProvider()) << "the first call waits for nobody";
  VirtualTime time;
  std::optional<CTCarrier> carrier;
  EXPECT_TRUE(
      time.waitUntil([&] { return (carrier = info.subscriberCellularProvider()).has_value(); }));
  EXPECT_EQ(carrier.value_or(CTCarrier{}).carrierName, "Ría Móvil");
  CTTelephonyNetworkInfo::setCarrierProvider(nullptr);
}

} // namespace
} // namespace zuvi
