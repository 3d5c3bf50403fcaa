#include "platform/CoreTelephony/CarrierProvider.h"

#include <mutex>
#include <thread>
#include <utility>

#include <gio/gio.h>

namespace zuvi {

namespace {

constexpr const char* service = "org.freedesktop.ModemManager1";
constexpr int timeoutMilliseconds = 200;

struct Release {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
  void operator()(GDBusConnection* bus) const { g_object_unref(bus); }
};
using Variant = std::unique_ptr<GVariant, Release>;
using Bus = std::unique_ptr<GDBusConnection, Release>;

/// Not the connection that the host shares: its settings are the host's.
Bus systemBus() {
  const std::unique_ptr<char, decltype(&g_free)> address(
      g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr), g_free);
  if (!address) return nullptr;
  return Bus(g_dbus_connection_new_for_address_sync(
      address.get(),
      GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                           G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr));
}

// Null on any failure. The service is not started for this.
Variant call(GDBusConnection* bus, const char* path, const char* interface, const char* method,
             GVariant* arguments, const char* replyType) {
  return Variant(g_dbus_connection_call_sync(
      bus, service, path, interface, method, arguments, G_VARIANT_TYPE(replyType),
      G_DBUS_CALL_FLAGS_NO_AUTO_START, timeoutMilliseconds, nullptr, nullptr));
}

// One property of one interface of an object in the reply of the object manager.
std::optional<std::string> property(GVariant* interfaces, const char* interface, const char* name,
                                    const char* type) {
  const Variant properties(g_variant_lookup_value(interfaces, interface, G_VARIANT_TYPE_VARDICT));
  if (!properties) return std::nullopt;
  const Variant value(g_variant_lookup_value(properties.get(), name, G_VARIANT_TYPE(type)));
  return value ? std::optional<std::string>(g_variant_get_string(value.get(), nullptr))
               : std::nullopt;
}

// The name that the SIM card gives its provider.
std::optional<std::string> nameOnSim(GDBusConnection* bus, GVariant* interfaces) {
  const auto sim = property(interfaces, "org.freedesktop.ModemManager1.Modem", "Sim", "o");
  if (!sim || *sim == "/") return std::nullopt;
  const Variant reply =
      call(bus, sim->c_str(), "org.freedesktop.DBus.Properties", "Get",
           g_variant_new("(ss)", "org.freedesktop.ModemManager1.Sim", "OperatorName"), "(v)");
  if (!reply) return std::nullopt;
  GVariant* inner = nullptr;
  g_variant_get(reply.get(), "(v)", &inner);
  const Variant value(inner);
  if (!g_variant_is_of_type(inner, G_VARIANT_TYPE_STRING)) return std::nullopt;
  return g_variant_get_string(inner, nullptr);
}

std::optional<CTCarrier> askService() {
  const Bus bus = systemBus();
  if (!bus) return std::nullopt;
  const Variant reply =
      call(bus.get(), "/org/freedesktop/ModemManager1", "org.freedesktop.DBus.ObjectManager",
           "GetManagedObjects", nullptr, "(a{oa{sa{sv}}})");
  if (!reply) return std::nullopt;
  const Variant objects(g_variant_get_child_value(reply.get(), 0));
  if (g_variant_n_children(objects.get()) == 0) return std::nullopt;
  const Variant modem(g_variant_get_child_value(objects.get(), 0));
  const Variant interfaces(g_variant_get_child_value(modem.get(), 1));
  auto name = nameOnSim(bus.get(), interfaces.get());
  if (!name || name->empty()) // a card need not carry it; the network in use is the next best
    name = property(interfaces.get(), "org.freedesktop.ModemManager1.Modem.Modem3gpp",
                    "OperatorName", "s");
  if (name && name->empty()) name.reset();
  return CTCarrier{name};
}

/// Gives what the service said last, and has it asked again on a thread of its own: a bus that
/// hangs holds up that thread alone.
class ModemManager final : public CarrierProvider {
public:
  std::optional<CTCarrier> subscriberCellularProvider() override {
    const std::lock_guard lock(answer_->mutex);
    if (!std::exchange(answer_->asking, true))
      std::thread([answer = answer_] {
        auto carrier = askService();
        const std::lock_guard answered(answer->mutex);
        answer->carrier = std::move(carrier);
        answer->asking = false;
      }).detach();
    return answer_->carrier;
  }

private:
  struct Answer {
    std::mutex mutex;
    bool asking = false;
    std::optional<CTCarrier> carrier;
  };
  const std::shared_ptr<Answer> answer_ = std::make_shared<Answer>();
};

} // namespace

std::shared_ptr<CarrierProvider> makeModemManagerCarrierProvider() {
  return std::make_shared<ModemManager>();
}

} // namespace zuvi
