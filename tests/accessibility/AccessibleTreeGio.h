#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gio/gio.h>

namespace zuvi::test {

/// What a program shows on the accessibility bus.
struct Accessible {
  std::string role, name;
  bool focused = false, busy = false, enabled = true;
  int depth = 0;
  std::string bus, path;
};

/// A session and an accessibility bus of the test's own, and an assistive technology that reads and
/// listens there.
class AccessibilityBus {
public:
  AccessibilityBus();
  ~AccessibilityBus();
  AccessibilityBus(const AccessibilityBus&) = delete;
  AccessibilityBus& operator=(const AccessibilityBus&) = delete;

  bool isThere() const { return connection_ != nullptr; }
  const std::string& address() const { return address_; }
  /// Everything that programs show, parents first.
  std::vector<Accessible> tree();
  /// Null when the call fails.
  std::shared_ptr<GVariant> call(const Accessible& object, const char* interface,
                                 const char* method, GVariant* arguments, const char* reply);
  std::shared_ptr<GVariant> property(const Accessible& object, const char* interface,
                                     const char* name);
  /// The descriptions that objects were given, in their order; screen readers speak them.
  std::vector<std::string> descriptions();

private:
  void visit(Accessible object, std::vector<Accessible>& found);

  GTestDBus* session_;
  GDBusConnection* connection_ = nullptr;
  std::string address_;
  std::vector<std::string> descriptions_;
};

} // namespace zuvi::test
