#include "kit/Helper/LiveChat/KeyboardNotification.h"

#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIWindow.h>

#include <cmath>
#include <limits>
#include <utility>

namespace zuvi {

namespace {

std::optional<double> finiteNumber(const Value::Dictionary& dictionary, const char* key) {
  const Value* value = valueForKey(dictionary, key);
  const auto number = value ? value->number() : std::nullopt;
  return number && std::isfinite(*number) ? number : std::nullopt;
}

} // namespace

KeyboardNotification::KeyboardNotification(Notification notification)
    : notification_(std::move(notification)) {}

CGRect KeyboardNotification::frame(const char* key) const {
  const Value* value = valueForKey(userInfo(), key);
  const Value::Dictionary* sides = value ? value->dictionary() : nullptr;
  if (!sides) return {};
  const auto x = finiteNumber(*sides, "x"), y = finiteNumber(*sides, "y");
  const auto width = finiteNumber(*sides, "width"), height = finiteNumber(*sides, "height");
  return x && y && width && height ? CGRect{*x, *y, *width, *height} : CGRect{};
}

CGRect KeyboardNotification::screenFrameBegin() const {
  return frame(UIKeyboardFrameBeginUserInfoKey);
}

CGRect KeyboardNotification::screenFrameEnd() const {
  return frame(UIKeyboardFrameEndUserInfoKey);
}

double KeyboardNotification::animationDuration() const {
  return finiteNumber(userInfo(), UIKeyboardAnimationDurationUserInfoKey).value_or(0.25);
}

int KeyboardNotification::animationCurve() const {
  const double curve = finiteNumber(userInfo(), UIKeyboardAnimationCurveUserInfoKey).value_or(0);
  return std::abs(curve) <= std::numeric_limits<int>::max() ? static_cast<int>(curve) : 0;
}

CGRect KeyboardNotification::frameBeginForView(const UIView& view) const {
  return view.convert(screenFrameBegin(), view.window());
}

CGRect KeyboardNotification::frameEndForView(const UIView& view) const {
  return view.convert(screenFrameEnd(), view.window());
}

} // namespace zuvi
