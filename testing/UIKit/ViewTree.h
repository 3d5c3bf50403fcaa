#pragma once

#include <ZuviSDK/Foundation/Value.h>

#include <memory>
#include <optional>
#include <string>

namespace zuvi {

class UIView;

/// What can be said of one view in words: class, outlet, frame on the screen in points, alpha,
/// hidden, and what its class adds (text, title, color, image, page, enabled and so on).
Value::Dictionary describeView(const UIView& view);

/// Everything on the screen: `screens`, the stack of screens by class, and `windows`, their views
/// with all below them as `children`.
Value describeScreen();

/// The first visible view of that outlet, action or class name, or that text when `isText`; the one
/// in front goes first. Null when there is none, even hidden; a hidden or transparent one only when
/// no other is there.
std::shared_ptr<UIView> findView(const std::string& name, bool isText);

/// Whether this view and all above it are shown at least faintly.
bool isShown(const UIView& view);

} // namespace zuvi
