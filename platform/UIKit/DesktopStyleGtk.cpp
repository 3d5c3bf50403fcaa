#include "platform/UIKit/DesktopStyle.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include <gtk/gtk.h>

namespace zuvi {

namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* appearance = "org.freedesktop.appearance";
constexpr const char* colorScheme = "color-scheme";
constexpr guint32 prefersDark = 1;

using Text = std::unique_ptr<char, decltype(&g_free)>;

bool portalWantsDark = false;

/// The value lies in one variant or, from older portals, in two.
void takeScheme(GVariant* value) {
  GVariant* scheme = g_variant_ref(value);
  while (g_variant_is_of_type(scheme, G_VARIANT_TYPE_VARIANT)) {
    GVariant* inner = g_variant_get_variant(scheme);
    g_variant_unref(scheme);
    scheme = inner;
  }
  if (g_variant_is_of_type(scheme, G_VARIANT_TYPE_UINT32))
    portalWantsDark = g_variant_get_uint32(scheme) == prefersDark;
  g_variant_unref(scheme);
}

void onSettingChanged(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                      GVariant* parameters, gpointer) {
  if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ssv)"))) return;
  const char* key = nullptr;
  GVariant* value = nullptr;
  g_variant_get(parameters, "(&s&s@v)", nullptr, &key, &value);
  if (std::string_view(key) == colorScheme) takeScheme(value);
  g_variant_unref(value);
}

void onRead(GObject* bus, GAsyncResult* result, gpointer) {
  GVariant* answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr);
  if (!answer) return; // no portal, or one that knows of no colours
  GVariant* value = g_variant_get_child_value(answer, 0);
  takeScheme(value);
  g_variant_unref(value);
  g_variant_unref(answer);
}

/// The connection is kept for the signals, as long as the process lives.
void onConnected(GObject*, GAsyncResult* result, gpointer) {
  GDBusConnection* bus = g_dbus_connection_new_for_address_finish(result, nullptr);
  if (!bus) return;
  g_dbus_connection_signal_subscribe(bus, portalName, settingsInterface, "SettingChanged",
                                     portalPath, appearance, G_DBUS_SIGNAL_FLAGS_NONE,
                                     onSettingChanged, nullptr, nullptr);
  g_dbus_connection_call(bus, portalName, portalPath, settingsInterface, "Read",
                         g_variant_new("(ss)", appearance, colorScheme), G_VARIANT_TYPE("(v)"),
                         G_DBUS_CALL_FLAGS_NONE, -1, nullptr, onRead, nullptr);
}

/// Empty where there is no bus: none is started for this.
std::string busAddress() {
  if (const char* named = std::getenv("DBUS_SESSION_BUS_ADDRESS")) return named;
  const std::string socket = std::string(g_get_user_runtime_dir()) + "/bus";
  std::error_code none;
  if (!std::filesystem::exists(socket, none)) return {};
  const Text escaped(g_dbus_address_escape_value(socket.c_str()), g_free);
  return std::string("unix:path=") + escaped.get();
}

void followPortal() {
  const std::string address = busAddress();
  if (address.empty()) return;
  // Not the shared connection: its end may end the program.
  g_dbus_connection_new_for_address(
      address.c_str(),
      GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                           G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, onConnected, nullptr);
}

/// The program's own wish, or a theme that is dark, as desktops without a portal name one.
bool settingsWantDark() {
  GtkSettings* settings = gtk_is_initialized() ? gtk_settings_get_default() : nullptr;
  if (!settings) return false;
  gboolean wished = FALSE;
  char* name = nullptr;
  g_object_get(settings, "gtk-application-prefer-dark-theme", &wished, "gtk-theme-name", &name,
               nullptr);
  const Text theme(name, g_free);
  return wished || (theme && std::string_view(theme.get()).ends_with("-dark"));
}

} // namespace

UIUserInterfaceStyle desktopStyle() {
  [[maybe_unused]] static const bool follows = (followPortal(), true);
  return portalWantsDark || settingsWantDark() ? UIUserInterfaceStyle::Dark
                                               : UIUserInterfaceStyle::Light;
}

} // namespace zuvi
