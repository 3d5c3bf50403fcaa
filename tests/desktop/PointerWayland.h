#pragma once

#include "platform/CoreGraphics/CGGeometry.h"

#include <cstdint>
#include <memory>
#include <string>

#include <wayland-client.h>

namespace zuvi::test {

/// A pointer of a compositor, by the protocol for pointers that are no device
/// (zwlr_virtual_pointer_manager_v1).
class Pointer {
public:
  /// `area`: the size of all outputs together, in points.
  Pointer(const std::string& display, CGSize area);
  ~Pointer();
  Pointer(const Pointer&) = delete;
  Pointer& operator=(const Pointer&) = delete;
  bool isThere() const { return pointer_ != nullptr; }

  void moveTo(CGPoint point);
  void click();
  /// Notches of the wheel downwards.
  void turnWheel(int notches);
  /// Two fingers on a touchpad move what is under the pointer by points.
  void swipe(double right, double down);

private:
  enum Request { Motion, MotionAbsolute, Button, Axis, Frame, AxisSource, AxisStop, AxisDiscrete };
  template <class... Arguments> void send(Request request, Arguments... arguments);
  void finishFrame();
  static void onGlobal(void* self, wl_registry* registry, std::uint32_t name, const char* interface,
                       std::uint32_t version);

  wl_display* display_;
  wl_proxy* manager_ = nullptr;
  wl_proxy* pointer_ = nullptr;
  CGSize area_;
  std::uint32_t time_ = 1; ///< in milliseconds; each event is later than the one before
};

} // namespace zuvi::test
