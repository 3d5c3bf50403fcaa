#pragma once

#include <memory>

namespace zuvi {
class Timer;
}

namespace zuvi::demo {

/// Stands for an on-screen keyboard: tells the program that one slides in at the bottom of the
/// screen or out again, as the window system of a phone would.
class Keyboard {
public:
  /// `height` in points; 0 hides it. False when nothing would change.
  bool slide(double height);

private:
  double height_ = 0;
  std::shared_ptr<Timer> arrival_;
};

} // namespace zuvi::demo
