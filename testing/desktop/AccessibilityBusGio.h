#pragma once

#include "testing/support/ScopedEnvironment.h"
#include "testing/support/TemporaryFolder.h"

#include <memory>
#include <vector>

#include <gio/gio.h>

namespace zuvi::test {

/// What a program shows on the accessibility bus.
struct Accessible {
  std::string bus, path;
  std::string role = {}, name = {};
  bool focused = false;
};

/// A session and an accessibility bus of the test's own, and an assistive technology that reads and
/// listens there.
class AccessibilityBus {
public:
  AccessibilityBus() {
    // This service alone: programs would start others, such as portals, with the rest.
    std::filesystem::create_symlink("/usr/share/dbus-1/services/org.a11y.Bus.service",
                                    services_.path("org.a11y.Bus.service"));
    g_test_dbus_add_service_dir(session_, services_.path().c_str());
    {
      // Starting a bus takes the display away.
      const ScopedEnvironment kept("DISPLAY", std::string(std::getenv("DISPLAY")));
      g_test_dbus_up(session_);
    }
    connection_ = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    const auto answer = call({"org.a11y.Bus", "/org/a11y/bus"}, "org.a11y.Bus", "GetAddress");
    g_clear_object(&connection_);
    if (!answer) return;
    const char* text = nullptr;
    g_variant_get(answer.get(), "(&s)", &text);
    address = text;
    connection_ = g_dbus_connection_new_for_address_sync(
        text,
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
    const auto heard = [](GDBusConnection*, const char*, const char*, const char*, const char*,
                          GVariant* arguments, gpointer told) {
      GVariant* description = nullptr;
      g_variant_get_child(arguments, 3, "v", &description);
      static_cast<std::vector<std::string>*>(told)->emplace_back(
          g_variant_get_string(description, nullptr));
      g_variant_unref(description);
    };
    for (const auto& [signal, detail] :
         {std::pair<const char*, const char*>{"PropertyChange", "accessible-description"},
          {"Announcement", nullptr}}) // since GTK 4.14
      g_dbus_connection_signal_subscribe(connection_, nullptr, "org.a11y.atspi.Event.Object",
                                         signal, nullptr, detail, G_DBUS_SIGNAL_FLAGS_NONE, heard,
                                         &announcements, nullptr);
  }
  ~AccessibilityBus() {
    g_clear_object(&connection_);
    g_test_dbus_down(session_);
    g_object_unref(session_);
  }
  AccessibilityBus(const AccessibilityBus&) = delete;

  struct Unref {
    void operator()(GVariant* value) const { g_variant_unref(value); }
  };
  using Answer = std::unique_ptr<GVariant, Unref>;
  /// Null when the call fails: an object may go while it is asked.
  Answer call(const Accessible& object, const char* interface, const char* method,
              GVariant* arguments = nullptr) {
    return Answer(g_dbus_connection_call_sync(connection_, object.bus.c_str(), object.path.c_str(),
                                              interface, method, arguments, nullptr,
                                              G_DBUS_CALL_FLAGS_NONE, 5000, nullptr, nullptr));
  }
  Answer property(const Accessible& object, const char* interface, const char* name) {
    GVariant* value = nullptr;
    if (const auto answer = call(object, "org.freedesktop.DBus.Properties", "Get",
                                 g_variant_new("(ss)", interface, name)))
      g_variant_get(answer.get(), "(v)", &value);
    return Answer(value);
  }
  /// Adds everything that is shown from there down, parents first.
  void read(Accessible object, std::vector<Accessible>& found) {
    constexpr guint32 focusedBit = 1U << 12; // of the first word of a state set
    const char* interface = "org.a11y.atspi.Accessible";
    const auto name = property(object, interface, "Name");
    const auto role = call(object, interface, "GetRoleName");
    const auto state = call(object, interface, "GetState");
    const auto children = call(object, interface, "GetChildren");
    if (!name || !role || !state || !children) return;
    object.name = g_variant_get_string(name.get(), nullptr);
    const char *word = nullptr, *bus = nullptr, *path = nullptr;
    g_variant_get(role.get(), "(&s)", &word);
    object.role = word;
    GVariantIter* each = nullptr;
    guint32 states = 0;
    g_variant_get(state.get(), "(au)", &each);
    g_variant_iter_next(each, "u", &states);
    g_variant_iter_free(each);
    object.focused = states & focusedBit;
    found.push_back(object);
    g_variant_get(children.get(), "(a(so))", &each);
    while (g_variant_iter_loop(each, "(&s&o)", &bus, &path))
      read({bus, path}, found);
    g_variant_iter_free(each);
  }

  std::string address; ///< empty when there is no such service
  /// What was announced, and what objects were given as description, in this order; screen readers
  /// speak both. Filled by the main context.
  std::vector<std::string> announcements;

private:
  const TemporaryFolder services_;
  GTestDBus* session_ = g_test_dbus_new(G_TEST_DBUS_NONE);
  GDBusConnection* connection_ = nullptr;
};

} // namespace zuvi::test
