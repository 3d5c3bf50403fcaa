#pragma once

#include <atomic>
#include <future>
#include <string>
#include <thread>

#include <gio/gio.h>

namespace zuvi::test {

/// Answers in the user's place when the desktop's portal asks whether a program may use the camera.
class AccessDialogue {
public:
  static constexpr const char* busName = "org.freedesktop.impl.portal.desktop.zuvitest";

  AccessDialogue() : thread_([this] { serve(); }) { ready_.get_future().wait(); }
  ~AccessDialogue() {
    ending_ = true;
    g_main_context_wakeup(context_);
    thread_.join();
    g_main_context_unref(context_);
  }
  AccessDialogue(const AccessDialogue&) = delete;

  std::atomic<bool> agrees = true;
  std::atomic<int> shown = 0;

  /// Allows the camera in the desktop's settings.
  static void allowInSettings() {
    auto* bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    const char* const granted[] = {"yes", nullptr};
    auto* answer = g_dbus_connection_call_sync(
        bus, "org.freedesktop.impl.portal.PermissionStore",
        "/org/freedesktop/impl/portal/PermissionStore",
        "org.freedesktop.impl.portal.PermissionStore", "SetPermission",
        g_variant_new("(sbss^as)", "devices", TRUE, "camera", "", granted), nullptr,
        G_DBUS_CALL_FLAGS_NONE, 5000, nullptr, nullptr);
    if (answer) g_variant_unref(answer);
    g_object_unref(bus);
  }

private:
  void serve() {
    g_main_context_push_thread_default(context_);
    auto* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    auto* bus = g_dbus_connection_new_for_address_sync(
        address,
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
    g_free(address);
    GDBusInterfaceVTable table{};
    table.method_call = [](GDBusConnection*, const char*, const char*, const char*, const char*,
                           GVariant*, GDBusMethodInvocation* invocation, gpointer data) {
      auto& self = *static_cast<AccessDialogue*>(data);
      self.shown++;
      GVariantBuilder results;
      g_variant_builder_init(&results, G_VARIANT_TYPE_VARDICT);
      g_dbus_method_invocation_return_value(
          invocation, g_variant_new("(ua{sv})", guint32(self.agrees ? 0 : 1), &results));
    };
    auto* node = g_dbus_node_info_new_for_xml(
        R"(<node><interface name="org.freedesktop.impl.portal.Access"><method name="AccessDialog">
             <arg type="o"/><arg type="s"/><arg type="s"/><arg type="s"/><arg type="s"/>
             <arg type="s"/><arg type="a{sv}"/><arg type="u" direction="out"/>
             <arg type="a{sv}" direction="out"/></method></interface></node>)",
        nullptr);
    g_dbus_connection_register_object(bus, "/org/freedesktop/portal/desktop", node->interfaces[0],
                                      &table, this, nullptr, nullptr);
    g_bus_own_name_on_connection(
        bus, busName, G_BUS_NAME_OWNER_FLAGS_NONE,
        [](GDBusConnection*, const char*, gpointer self) {
          static_cast<AccessDialogue*>(self)->ready_.set_value();
        },
        nullptr, this, nullptr);
    while (!ending_)
      g_main_context_iteration(context_, TRUE);
    g_dbus_connection_close_sync(bus, nullptr, nullptr);
    g_object_unref(bus);
    g_dbus_node_info_unref(node);
    g_main_context_pop_thread_default(context_);
  }

  GMainContext* context_ = g_main_context_new();
  std::promise<void> ready_;
  std::atomic<bool> ending_ = false;
  std::thread thread_;
};

} // namespace zuvi::test
