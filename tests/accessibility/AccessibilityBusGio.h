#pragma once

#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gio/gio.h>

namespace zuvi::test {

/// What a program shows on the accessibility bus.
struct Accessible {
  std::string bus, path;
  int depth = 0;
  std::string role = {}, name = {};
  bool focused = false;
};

/// A session and an accessibility bus of the test's own, and an assistive technology that reads and
/// listens there.
class AccessibilityBus {
public:
  AccessibilityBus() : session_(g_test_dbus_new(G_TEST_DBUS_NONE)) {
    const char* display = std::getenv("DISPLAY"); // which that takes away
    const std::string kept = display ? display : "";
    g_test_dbus_add_service_dir(session_, "/usr/share/dbus-1/services");
    g_test_dbus_up(session_);
    if (display) setenv("DISPLAY", kept.c_str(), 1);
    connection_ = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (!connection_) return;
    const auto answer =
        call({"org.a11y.Bus", "/org/a11y/bus"}, "org.a11y.Bus", "GetAddress", nullptr, "(s)");
    g_clear_object(&connection_);
    if (!answer) return;
    address = g_variant_get_string(child(answer, 0).get(), nullptr);
    connection_ = g_dbus_connection_new_for_address_sync(
        address.c_str(),
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
    if (!connection_) return;
    const auto heard = [](GDBusConnection*, const char*, const char*, const char*, const char*,
                          GVariant* arguments, gpointer told) {
      const auto text = child(child(hold(g_variant_ref(arguments)), 3), 0);
      if (g_variant_is_of_type(text.get(), G_VARIANT_TYPE_STRING))
        static_cast<std::vector<std::string>*>(told)->emplace_back(
            g_variant_get_string(text.get(), nullptr));
    };
    g_dbus_connection_signal_subscribe(connection_, nullptr, "org.a11y.atspi.Event.Object",
                                       "PropertyChange", nullptr, "accessible-description",
                                       G_DBUS_SIGNAL_FLAGS_NONE, heard, &descriptions, nullptr);
  }
  ~AccessibilityBus() {
    g_clear_object(&connection_);
    g_test_dbus_down(session_);
    g_object_unref(session_);
  }
  AccessibilityBus(const AccessibilityBus&) = delete;
  AccessibilityBus& operator=(const AccessibilityBus&) = delete;

  bool isThere() const { return connection_ != nullptr; }

  using Answer = std::shared_ptr<GVariant>;
  /// Null when the call fails: an object may go while it is asked.
  Answer call(const Accessible& object, const char* interface, const char* method,
              GVariant* arguments, const char* reply) {
    return hold(g_dbus_connection_call_sync(connection_, object.bus.c_str(), object.path.c_str(),
                                            interface, method, arguments, G_VARIANT_TYPE(reply),
                                            G_DBUS_CALL_FLAGS_NONE, 5000, nullptr, nullptr));
  }
  Answer property(const Accessible& object, const char* interface, const char* name) {
    const auto answer = call(object, "org.freedesktop.DBus.Properties", "Get",
                             g_variant_new("(ss)", interface, name), "(v)");
    return answer ? child(child(answer, 0), 0) : nullptr;
  }
  /// Everything that programs show, parents first.
  std::vector<Accessible> tree() {
    std::vector<Accessible> found;
    visit({"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"}, found);
    return found;
  }

  std::string address;
  /// What objects were given as description, in this order; screen readers speak it. Filled by the
  /// main context.
  std::vector<std::string> descriptions;

private:
  static Answer hold(GVariant* value) {
    return {value, [](GVariant* held) {
              if (held) g_variant_unref(held);
            }};
  }
  static Answer child(const Answer& value, gsize index) {
    return hold(g_variant_get_child_value(value.get(), index));
  }

  void visit(Accessible object, std::vector<Accessible>& found) {
    static const std::map<guint32, std::string> roles{
        {2, "alert"}, {16, "dialog"},       {27, "image"},       {29, "label"},  {31, "list"},
        {32, "row"},  {42, "progress bar"}, {43, "push button"}, {83, "heading"}};
    constexpr guint32 focusedBit = 1U << 12; // of the first word of a state set
    const char* interface = "org.a11y.atspi.Accessible";
    const auto role = call(object, interface, "GetRole", nullptr, "(u)");
    const auto name = property(object, interface, "Name");
    const auto state = call(object, interface, "GetState", nullptr, "(au)");
    const auto children = call(object, interface, "GetChildren", nullptr, "(a(so))");
    if (!role || !name || !children) return;
    const auto known = roles.find(g_variant_get_uint32(child(role, 0).get()));
    if (known != roles.end()) object.role = known->second;
    object.name = g_variant_get_string(name.get(), nullptr);
    const auto words = state ? child(state, 0) : nullptr;
    object.focused = words && g_variant_n_children(words.get()) > 0 &&
                     (g_variant_get_uint32(child(words, 0).get()) & focusedBit);
    found.push_back(object);
    const auto list = child(children, 0);
    for (gsize i = 0; i < g_variant_n_children(list.get()); i++) {
      const char *bus = nullptr, *path = nullptr;
      g_variant_get_child(list.get(), i, "(&s&o)", &bus, &path);
      visit({bus, path, object.depth + 1}, found);
    }
  }

  GTestDBus* session_;
  GDBusConnection* connection_ = nullptr;
};

} // namespace zuvi::test
