#include "demo/core/Keyboard.h"

#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/Foundation/Timer.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include "platform/UIKit/UIScreen.h"

#include <utility>

namespace zuvi::demo {

namespace {

constexpr double slideTime = 0.25; // seconds

/// Where a keyboard of that height is; out of sight it waits below the screen.
Value frameOf(double visible, double height) {
  const CGRect screen = UIScreen::main().bounds();
  return Value::Dictionary{
      {"x", 0.0}, {"y", screen.height - visible}, {"width", screen.width}, {"height", height}};
}

} // namespace

bool Keyboard::slide(double height) {
  const double before = std::exchange(height_, height);
  if (before == height) return false;
  // One that hides keeps its height; it is only elsewhere.
  const double tall = height > 0 ? height : before;
  const Value::Dictionary info{
      {UIKeyboardFrameBeginUserInfoKey, frameOf(before, before > 0 ? before : height)},
      {UIKeyboardFrameEndUserInfoKey, frameOf(height, tall)},
      {UIKeyboardAnimationDurationUserInfoKey, slideTime},
      {UIKeyboardAnimationCurveUserInfoKey, 0}};
  NotificationCenter::defaultCenter().post(
      height > 0 ? UIKeyboardWillShowNotification : UIKeyboardWillHideNotification, info);
  arrival_ = Timer::scheduled(slideTime, Timer::Repeats::No, [info] {
    NotificationCenter::defaultCenter().post(UIKeyboardDidChangeFrameNotification, info);
  });
  return true;
}

} // namespace zuvi::demo
