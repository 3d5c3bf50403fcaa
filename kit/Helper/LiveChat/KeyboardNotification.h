#pragma once

#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/UIKit/UIView.h>

namespace zuvi {

/// The contents of a keyboard notification. A missing value, or one of another type, has a default.
class KeyboardNotification {
public:
  explicit KeyboardNotification(Notification notification);

  /// In the screen's coordinates; empty when missing.
  CGRect screenFrameBegin() const;
  CGRect screenFrameEnd() const;
  /// Seconds; 0.25 when missing.
  double animationDuration() const;
  /// The number of a curve; 0 (ease in and out) when missing.
  int animationCurve() const;

  /// The same frames in the coordinates of a view.
  CGRect frameBeginForView(const UIView& view) const;
  CGRect frameEndForView(const UIView& view) const;

private:
  const Value::Dictionary& userInfo() const { return notification_.userInfo; }
  CGRect frame(const char* key) const;

  Notification notification_;
};

} // namespace zuvi
