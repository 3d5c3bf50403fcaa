#pragma once

#include "testing/desktop/BusServiceGio.h"

#include <cstdlib>

namespace zuvi::test {

/// Answers in the user's place when the desktop's portal asks whether a program may use the camera.
class AccessDialogue {
public:
  static constexpr const char* busName = "org.freedesktop.impl.portal.desktop.zuvitest";

  std::atomic<bool> agrees = true;
  std::atomic<bool> hesitates = false; ///< and leaves the dialogue open
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
  GVariant* answer() {
    shown++;
    if (hesitates) return nullptr;
    GVariantBuilder results;
    g_variant_builder_init(&results, G_VARIANT_TYPE_VARDICT);
    return g_variant_new("(ua{sv})", guint32(agrees ? 0 : 1), &results);
  }

  BusService service_{
      {std::getenv("DBUS_SESSION_BUS_ADDRESS"), busName, "/org/freedesktop/portal/desktop",
       R"(<node><interface name="org.freedesktop.impl.portal.Access"><method name="AccessDialog">
         <arg type="o"/><arg type="s"/><arg type="s"/><arg type="s"/><arg type="s"/>
         <arg type="s"/><arg type="a{sv}"/><arg type="u" direction="out"/>
         <arg type="a{sv}" direction="out"/></method></interface></node>)",
       [this] { return answer(); }}};
};

} // namespace zuvi::test
