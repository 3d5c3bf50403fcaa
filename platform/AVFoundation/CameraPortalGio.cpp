#include "platform/AVFoundation/CameraPortal.h"

#include <gio/gio.h>
#include <gio/gunixfdlist.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <unistd.h>

namespace zuvi {

namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* cameraInterface = "org.freedesktop.portal.Camera";
constexpr const char* requestInterface = "org.freedesktop.portal.Request";
constexpr int callTimeout = 5000; // milliseconds

struct ObjectUnref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
using Connection = std::unique_ptr<GDBusConnection, ObjectUnref>;

struct VariantUnref {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using Variant = std::unique_ptr<GVariant, VariantUnref>;

struct ContextUnref {
  void operator()(GMainContext* context) const { g_main_context_unref(context); }
};

Connection connect() {
  std::unique_ptr<char, decltype(&g_free)> address(
      g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr), g_free);
  if (!address) return nullptr;
  // Not the shared connection: that one's signals belong to the main thread.
  return Connection(g_dbus_connection_new_for_address_sync(
      address.get(),
      GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                           G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr));
}

/// A dialogue that is open.
struct Asking {
  bool done = false;
  bool granted = false;

  static void answered(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                       GVariant* parameters, gpointer data) {
    auto& self = *static_cast<Asking*>(data);
    guint32 response = 1;
    if (g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ua{sv})")))
      g_variant_get_child(parameters, 0, "u", &response);
    self.granted = response == 0;
    self.done = true;
  }
  static void gone(GDBusConnection*, const gchar*, gpointer data) {
    static_cast<Asking*>(data)->done = true;
  }
  static void closed(GDBusConnection*, gboolean, GError*, gpointer data) {
    static_cast<Asking*>(data)->done = true;
  }
};

Variant call(GDBusConnection* bus, const char* interface, const char* method, GVariant* arguments,
             const char* type) {
  return Variant(g_dbus_connection_call_sync(
      bus, portalName, portalPath, interface, method, arguments, G_VARIANT_TYPE(type),
      G_DBUS_CALL_FLAGS_NONE, callTimeout, nullptr, nullptr));
}

/// Runs the dialogue on the calling thread, whose default context is `context`.
bool ask(GDBusConnection* bus, GMainContext* context) {
  // The answer may come before the request's path is known. This connection asks nothing else, so
  // any answer on it is the one.
  Asking asking;
  const guint subscription = g_dbus_connection_signal_subscribe(
      bus, portalName, requestInterface, "Response", nullptr, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
      Asking::answered, &asking, nullptr);
  GVariantBuilder options;
  g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
  if (call(bus, cameraInterface, "AccessCamera", g_variant_new("(a{sv})", &options), "(o)")) {
    const guint watch = g_bus_watch_name_on_connection(
        bus, portalName, G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr, Asking::gone, &asking, nullptr);
    const gulong closed = g_signal_connect(bus, "closed", G_CALLBACK(Asking::closed), &asking);
    while (!asking.done)
      g_main_context_iteration(context, TRUE);
    g_signal_handler_disconnect(bus, closed);
    g_bus_unwatch_name(watch);
  }
  g_dbus_connection_signal_unsubscribe(bus, subscription);
  return asking.granted;
}

bool askOnOwnContext() {
  std::unique_ptr<GMainContext, ContextUnref> context(g_main_context_new());
  g_main_context_push_thread_default(context.get());
  bool granted = false;
  if (auto bus = connect()) granted = ask(bus.get(), context.get());
  g_main_context_pop_thread_default(context.get());
  return granted;
}

} // namespace

bool CameraPortal::isSandboxed() {
  // The browser engine's own sandbox leaves an empty one on the machine when root runs it.
  std::error_code none;
  const auto size = std::filesystem::file_size("/.flatpak-info", none);
  return (!none && size > 0) || std::getenv("SNAP");
}

void CameraPortal::requestAccess(std::function<void(bool)> answer) {
  // The dialogue may stay open for as long as the user likes.
  std::thread([answer = std::move(answer)] { answer(askOnOwnContext()); }).detach();
}

int CameraPortal::openCameras() {
  auto bus = connect();
  if (!bus) return -1;
  GVariantBuilder options;
  g_variant_builder_init(&options, G_VARIANT_TYPE_VARDICT);
  GUnixFDList* list = nullptr;
  Variant reply(g_dbus_connection_call_with_unix_fd_list_sync(
      bus.get(), portalName, portalPath, cameraInterface, "OpenPipeWireRemote",
      g_variant_new("(a{sv})", &options), G_VARIANT_TYPE("(h)"), G_DBUS_CALL_FLAGS_NONE,
      callTimeout, nullptr, &list, nullptr, nullptr));
  std::unique_ptr<GUnixFDList, ObjectUnref> descriptors(list);
  if (!reply || !descriptors) return -1;
  gint32 index = 0;
  g_variant_get(reply.get(), "(h)", &index);
  return index >= 0 && index < g_unix_fd_list_get_length(list)
             ? g_unix_fd_list_get(list, index, nullptr)
             : -1;
}

} // namespace zuvi
