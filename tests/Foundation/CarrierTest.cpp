#include "platform/CoreTelephony/CTTelephonyNetworkInfo.h"
#include "platform/CoreTelephony/CarrierProvider.h"
#include "tests/support/ScopedEnvironment.h"

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include <gio/gio.h>
#include <gtest/gtest.h>

namespace zuvi {
namespace {

/// What the service replies, in text form; an empty text is no reply at all. Read on the thread of
/// the bus, which may outlive a test by a little.
struct Script {
  std::mutex mutex;
  std::string managedObjects = "({},)";
  std::string simReply;
} script;

/// A message bus of its own, on which a modem service answers with scripted values.
class ModemBus {
public:
  ModemBus() : bus_(g_test_dbus_new(G_TEST_DBUS_NONE)) { g_test_dbus_up(bus_); }

  ~ModemBus() {
    if (connection_) {
      g_dbus_connection_close_sync(connection_, nullptr, nullptr);
      g_object_unref(connection_);
    }
    g_test_dbus_stop(bus_);
    g_object_unref(bus_);
  }

  static void answer(const std::string& managedObjects, const std::string& simReply) {
    const std::lock_guard lock(script.mutex);
    script.managedObjects = managedObjects;
    script.simReply = simReply;
  }

  std::string address() const { return g_test_dbus_get_bus_address(bus_); }

  void startService() {
    const auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    connection_ =
        g_dbus_connection_new_for_address_sync(address().c_str(), flags, nullptr, nullptr, nullptr);
    g_dbus_connection_add_filter(connection_, &ModemBus::filter, nullptr, nullptr);
    g_variant_unref(g_dbus_connection_call_sync(
        connection_, "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", "org.freedesktop.ModemManager1", 0U), nullptr, G_DBUS_CALL_FLAGS_NONE,
        -1, nullptr, nullptr));
  }

private:
  static GDBusMessage* filter(GDBusConnection* connection, GDBusMessage* message, gboolean incoming,
                              gpointer) {
    const bool call =
        incoming && g_dbus_message_get_message_type(message) == G_DBUS_MESSAGE_TYPE_METHOD_CALL;
    if (!call) return message;
    const bool objects = std::string(g_dbus_message_get_member(message)) == "GetManagedObjects";
    const std::lock_guard lock(script.mutex);
    const std::string& text = objects ? script.managedObjects : script.simReply;
    if (!text.empty()) {
      GDBusMessage* reply = g_dbus_message_new_method_reply(message);
      g_dbus_message_set_body(reply,
                              g_variant_parse(objects ? G_VARIANT_TYPE("(a{oa{sa{sv}}})") : nullptr,
                                              text.c_str(), nullptr, nullptr, nullptr));
      g_dbus_connection_send_message(connection, reply, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr,
                                     nullptr);
      g_object_unref(reply);
    }
    g_object_unref(message);
    return nullptr;
  }

  GTestDBus* bus_;
  GDBusConnection* connection_ = nullptr;
};

std::optional<CTCarrier> carrier() {
  return CTTelephonyNetworkInfo().subscriberCellularProvider();
}

TEST(CarrierTest, TheModemServiceIsAskedAndItsSilenceIsShort) {
  ModemBus bus;
  const test::ScopedEnvironment address("DBUS_SYSTEM_BUS_ADDRESS", bus.address());
  EXPECT_FALSE(carrier()); // nobody answers to the name
  bus.startService();
  EXPECT_FALSE(carrier()); // no modem

  const std::string modem = "'org.freedesktop.ModemManager1.Modem': {'Sim': <objectpath '/SIM/0'>}";
  const std::string network =
      "'org.freedesktop.ModemManager1.Modem.Modem3gpp': {'OperatorName': <'Network'>}";
  const std::string both = "({'/Modem/0': {" + modem + ", " + network + "}},)";
  bus.answer(both, "(<'Subscriber'>,)");
  EXPECT_EQ(carrier()->carrierName, "Subscriber");
  for (const char* other : {"(<''>,)", "(<7>,)", "('no variant',)"}) {
    bus.answer(both, other);
    EXPECT_EQ(carrier()->carrierName, "Network") << other;
  }
  bus.answer("({'/Modem/0': {" + modem + "}},)", "(<''>,)");
  ASSERT_TRUE(carrier());
  EXPECT_EQ(carrier()->carrierName, std::nullopt);

  bus.answer("", "");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(carrier());
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(CarrierTest, AnInstalledProviderTakesItsPlaceAndABusMayBeMissing) {
  struct Scripted final : CarrierProvider {
    std::optional<CTCarrier> subscriberCellularProvider() override { return CTCarrier{"Telefon"}; }
  };
  CTTelephonyNetworkInfo::setCarrierProvider(std::make_shared<Scripted>());
  EXPECT_EQ(carrier()->carrierName, "Telefon");
  CTTelephonyNetworkInfo::setCarrierProvider(nullptr);
  const test::ScopedEnvironment address("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere/at/all");
  EXPECT_FALSE(carrier());
}

} // namespace
} // namespace zuvi
