#pragma once

#include <ZuviSDK/UIKit/UIWindow.h>

namespace zuvi {

/// The floating window of the chat.
class PassThroughWindow final : public UIWindow {
public:
  UIView* hitTest(CGPoint point) override { return UIWindow::hitTest(point); }
};

} // namespace zuvi
