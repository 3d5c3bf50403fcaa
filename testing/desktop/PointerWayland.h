#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>

#include <cstring>
#include <string>

#include <wayland-client.h>

namespace zuvi::test {

/// A pointer of a compositor, by the protocol for pointers that are no device
/// (zwlr_virtual_pointer_manager_v1).
class Pointer {
public:
  /// `area`: the size of all outputs together, in points.
  Pointer(const std::string& display, CGSize area)
      : display_(wl_display_connect(display.c_str())), area_(area) {
    if (!display_) return;
    static const wl_registry_listener listener = {onGlobal,
                                                  [](void*, wl_registry*, std::uint32_t) {}};
    wl_registry* registry = wl_display_get_registry(display_);
    wl_registry_add_listener(registry, &listener, this);
    wl_display_roundtrip(display_);
    wl_registry_destroy(registry);
    if (!manager_) return;
    pointer_ = wl_proxy_marshal_flags(manager_, 0, &pointerInterface, version, 0, nullptr, nullptr);
    wl_display_roundtrip(display_);
  }
  ~Pointer() {
    if (pointer_) wl_proxy_destroy(pointer_);
    if (manager_) wl_proxy_destroy(manager_);
    if (display_) wl_display_disconnect(display_);
  }
  Pointer(const Pointer&) = delete;
  bool isThere() const { return pointer_ != nullptr; }

  void moveTo(CGPoint point) {
    // From the side, so that it moves in any case.
    for (const double x : {point.x + 1, point.x})
      send(MotionAbsolute, time_, std::uint32_t(x), std::uint32_t(point.y),
           std::uint32_t(area_.width), std::uint32_t(area_.height));
  }
  void click() {
    constexpr std::uint32_t left = 0x110; // as the kernel names it
    for (const auto state : {WL_POINTER_BUTTON_STATE_PRESSED, WL_POINTER_BUTTON_STATE_RELEASED})
      send(Button, time_, left, std::uint32_t(state));
  }
  /// Notches of the wheel downwards.
  void turnWheel(int notches) {
    constexpr int step = 15; // what compositors tell of a notch beside it
    const int way = notches > 0 ? 1 : -1;
    for (int i = 0; i < std::abs(notches); i++) {
      request(AxisSource, std::uint32_t(WL_POINTER_AXIS_SOURCE_WHEEL));
      send(AxisDiscrete, time_, std::uint32_t(WL_POINTER_AXIS_VERTICAL_SCROLL),
           wl_fixed_from_int(step * way), way);
    }
  }
  /// Two fingers on a touchpad move what is under the pointer by points.
  void swipe(double right, double down) {
    const std::pair<std::uint32_t, double> ways[] = {{WL_POINTER_AXIS_VERTICAL_SCROLL, down},
                                                     {WL_POINTER_AXIS_HORIZONTAL_SCROLL, right}};
    for (const auto& [axis, way] : ways) { // both in one frame would end this compositor
      if (way == 0) continue;
      request(AxisSource, std::uint32_t(WL_POINTER_AXIS_SOURCE_FINGER));
      send(Axis, time_, axis, wl_fixed_from_double(way));
      request(AxisSource, std::uint32_t(WL_POINTER_AXIS_SOURCE_FINGER));
      send(AxisStop, time_, axis);
    }
  }

private:
  enum Request { Motion, MotionAbsolute, Button, Axis, Frame, AxisSource, AxisStop, AxisDiscrete };

  template <class... Arguments> void request(Request what, Arguments... arguments) {
    if (pointer_) wl_proxy_marshal_flags(pointer_, what, nullptr, version, 0, arguments...);
  }
  /// A request that is a whole event, with those before it.
  template <class... Arguments> void send(Request what, Arguments... arguments) {
    request(what, arguments...);
    request(Frame);
    time_ += 20;
    wl_display_roundtrip(display_);
  }
  static void onGlobal(void* self, wl_registry* registry, std::uint32_t name, const char* interface,
                       std::uint32_t) {
    if (std::strcmp(interface, managerInterface.name) == 0)
      static_cast<Pointer*>(self)->manager_ =
          static_cast<wl_proxy*>(wl_registry_bind(registry, name, &managerInterface, version));
  }

  static constexpr int version = 1;
  // Types of arguments, of which none is an object that needs a name here.
  static inline const wl_interface* none[8] = {};
  static inline const wl_message pointerRequests[] = {
      {"motion", "uff", none},   {"motion_absolute", "uuuuu", none},
      {"button", "uuu", none},   {"axis", "uuf", none},
      {"frame", "", none},       {"axis_source", "u", none},
      {"axis_stop", "uu", none}, {"axis_discrete", "uufi", none},
      {"destroy", "", none},
  };
  static inline const wl_interface pointerInterface = {"zwlr_virtual_pointer_v1", version, 9,
                                                       pointerRequests,           0,       nullptr};
  static inline const wl_interface* made[2] = {nullptr, &pointerInterface};
  static inline const wl_message managerRequests[] = {{"create_virtual_pointer", "?on", made},
                                                      {"destroy", "", none}};
  static inline const wl_interface managerInterface = {
      "zwlr_virtual_pointer_manager_v1", version, 2, managerRequests, 0, nullptr};

  wl_display* display_;
  wl_proxy *manager_ = nullptr, *pointer_ = nullptr;
  CGSize area_;
  std::uint32_t time_ = 1; ///< in milliseconds; each event is later than the one before
};

} // namespace zuvi::test
