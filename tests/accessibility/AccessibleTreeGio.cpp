#include "tests/accessibility/AccessibleTreeGio.h"

#include <cstdlib>
#include <map>

namespace zuvi::test {

namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";

const std::map<guint32, std::string> roles{
    {2, "alert"}, {16, "dialog"}, {27, "image"},        {29, "label"},       {31, "list"},
    {32, "row"},  {39, "panel"},  {42, "progress bar"}, {43, "push button"}, {83, "heading"}};

// Bits of a state set
constexpr guint32 busyBit = 1U << 3, focusedBit = 1U << 12, sensitiveBit = 1U << 24;

std::shared_ptr<GVariant> hold(GVariant* value) {
  return {value, [](GVariant* held) {
            if (held) g_variant_unref(held);
          }};
}

} // namespace

AccessibilityBus::AccessibilityBus() : session_(g_test_dbus_new(G_TEST_DBUS_NONE)) {
  g_test_dbus_add_service_dir(session_, "/usr/share/dbus-1/services");
  const char* display = std::getenv("DISPLAY"); // which that takes away
  const std::string kept = display ? display : "";
  g_test_dbus_up(session_);
  if (display) setenv("DISPLAY", kept.c_str(), 1);
  GDBusConnection* session = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  if (!session) return;
  const auto answer = hold(g_dbus_connection_call_sync(
      session, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", nullptr,
      G_VARIANT_TYPE("(s)"), G_DBUS_CALL_FLAGS_NONE, 10000, nullptr, nullptr));
  g_object_unref(session);
  if (!answer) return;
  const char* address = nullptr;
  g_variant_get(answer.get(), "(&s)", &address);
  address_ = address;
  connection_ = g_dbus_connection_new_for_address_sync(
      address,
      GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                           G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr);
  if (!connection_) return;
  const auto heard = [](GDBusConnection*, const char*, const char*, const char*, const char*,
                        GVariant* arguments, gpointer self) {
    const auto value = hold(g_variant_get_child_value(arguments, 3));
    const auto text = hold(g_variant_get_variant(value.get()));
    if (g_variant_is_of_type(text.get(), G_VARIANT_TYPE_STRING))
      static_cast<AccessibilityBus*>(self)->descriptions_.emplace_back(
          g_variant_get_string(text.get(), nullptr));
  };
  g_dbus_connection_signal_subscribe(connection_, nullptr, "org.a11y.atspi.Event.Object",
                                     "PropertyChange", nullptr, "accessible-description",
                                     G_DBUS_SIGNAL_FLAGS_NONE, heard, this, nullptr);
}

AccessibilityBus::~AccessibilityBus() {
  g_clear_object(&connection_);
  g_test_dbus_down(session_);
  g_object_unref(session_);
}

std::shared_ptr<GVariant> AccessibilityBus::call(const Accessible& object, const char* interface,
                                                 const char* method, GVariant* arguments,
                                                 const char* reply) {
  return hold(g_dbus_connection_call_sync(connection_, object.bus.c_str(), object.path.c_str(),
                                          interface, method, arguments, G_VARIANT_TYPE(reply),
                                          G_DBUS_CALL_FLAGS_NONE, 5000, nullptr, nullptr));
}

std::shared_ptr<GVariant> AccessibilityBus::property(const Accessible& object,
                                                     const char* interface, const char* name) {
  const auto answer = call(object, "org.freedesktop.DBus.Properties", "Get",
                           g_variant_new("(ss)", interface, name), "(v)");
  if (!answer) return nullptr;
  GVariant* value = nullptr;
  g_variant_get(answer.get(), "(v)", &value);
  return hold(value);
}

void AccessibilityBus::visit(Accessible object, std::vector<Accessible>& found) {
  // An object may go while it is asked.
  const auto role = call(object, accessible, "GetRole", nullptr, "(u)");
  const auto name = property(object, accessible, "Name");
  const auto state = call(object, accessible, "GetState", nullptr, "(au)");
  const auto children = call(object, accessible, "GetChildren", nullptr, "(a(so))");
  if (!role || !name || !children) return;
  guint32 number = 0;
  g_variant_get(role.get(), "(u)", &number);
  const auto known = roles.find(number);
  object.role = known == roles.end() ? "role " + std::to_string(number) : known->second;
  object.name = g_variant_get_string(name.get(), nullptr);
  if (state) {
    const auto words = hold(g_variant_get_child_value(state.get(), 0));
    guint32 low = 0;
    if (g_variant_n_children(words.get()) > 0) g_variant_get_child(words.get(), 0, "u", &low);
    object.focused = low & focusedBit;
    object.busy = low & busyBit;
    object.enabled = low & sensitiveBit;
  }
  found.push_back(object);
  const auto list = hold(g_variant_get_child_value(children.get(), 0));
  for (gsize i = 0; i < g_variant_n_children(list.get()); i++) {
    const char *bus = nullptr, *path = nullptr;
    g_variant_get_child(list.get(), i, "(&s&o)", &bus, &path);
    Accessible child;
    child.bus = bus;
    child.path = path;
    child.depth = object.depth + 1;
    visit(child, found);
  }
}

std::vector<Accessible> AccessibilityBus::tree() {
  std::vector<Accessible> found;
  Accessible desktop;
  desktop.bus = "org.a11y.atspi.Registry";
  desktop.path = "/org/a11y/atspi/accessible/root";
  visit(desktop, found);
  return found;
}

std::vector<std::string> AccessibilityBus::descriptions() {
  while (g_main_context_iteration(nullptr, FALSE)) {
  }
  return descriptions_;
}

} // namespace zuvi::test
