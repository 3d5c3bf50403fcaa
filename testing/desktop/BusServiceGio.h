#pragma once

#include <atomic>
#include <functional>
#include <future>
#include <string>
#include <thread>

#include <gio/gio.h>

namespace zuvi::test {

/// A service with one object of one interface, which lives on a thread of its own.
class BusService {
public:
  struct Object {
    std::string bus;                   ///< its address
    const char *name, *path;           ///< where it is found
    const char* description;           ///< of the interface, as XML
    std::function<GVariant*()> answer; ///< to every call; null: the caller waits on
  };

  explicit BusService(Object object) : object_(std::move(object)), thread_([this] { serve(); }) {
    ready_.get_future().wait();
  }
  ~BusService() {
    ending_ = true;
    g_main_context_wakeup(context_);
    thread_.join();
    g_main_context_unref(context_);
  }
  BusService(const BusService&) = delete;

  /// Sends a signal of the interface.
  void emit(const char* interface, const char* signal, GVariant* values) {
    g_dbus_connection_emit_signal(bus_, nullptr, object_.path, interface, signal, values, nullptr);
  }

private:
  void serve() {
    g_main_context_push_thread_default(context_);
    auto* bus = bus_ = g_dbus_connection_new_for_address_sync(
        object_.bus.c_str(),
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
    GDBusInterfaceVTable table{};
    table.method_call = [](GDBusConnection*, const char*, const char*, const char*, const char*,
                           GVariant*, GDBusMethodInvocation* invocation, gpointer self) {
      if (GVariant* answer = static_cast<BusService*>(self)->object_.answer())
        g_dbus_method_invocation_return_value(invocation, answer);
      else
        g_object_unref(invocation);
    };
    auto* node = g_dbus_node_info_new_for_xml(object_.description, nullptr);
    g_dbus_connection_register_object(bus, object_.path, node->interfaces[0], &table, this, nullptr,
                                      nullptr);
    g_bus_own_name_on_connection(
        bus, object_.name, G_BUS_NAME_OWNER_FLAGS_NONE,
        [](GDBusConnection*, const char*, gpointer self) {
          static_cast<BusService*>(self)->ready_.set_value();
        },
        nullptr, this, nullptr);
    while (!ending_)
      g_main_context_iteration(context_, TRUE);
    g_dbus_connection_close_sync(bus, nullptr, nullptr);
    g_object_unref(bus);
    g_dbus_node_info_unref(node);
    g_main_context_pop_thread_default(context_);
  }

  const Object object_;
  GDBusConnection* bus_ = nullptr;
  GMainContext* context_ = g_main_context_new();
  std::promise<void> ready_;
  std::atomic<bool> ending_ = false;
  std::thread thread_;
};

} // namespace zuvi::test
