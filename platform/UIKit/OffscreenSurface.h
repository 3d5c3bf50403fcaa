#pragma once

#include <ZuviSDK/CoreGraphics/CGImage.h>
#include "platform/UIKit/UIScreen.h"

#include <memory>

namespace zuvi {

/// A screen in memory, for machines without a display. One at a time; while it lives the screen
/// draws here. Main queue only.
class OffscreenSurface : public ScreenSurface {
public:
  /// `size` in points, `scale` pixels a point.
  OffscreenSurface(CGSize size, double scale, UIEdgeInsets safeArea = {});
  ~OffscreenSurface() override;

  void requestFrame() override { frameDue_ = true; }
  /// Draws what has changed since the last frame; false when nothing has.
  bool drawFrame();
  /// Whether something has changed, or moves by itself.
  bool isFrameDue() const { return frameDue_; }
  /// Everything as it is now, up to date.
  std::shared_ptr<const CGImage> picture();

private:
  struct Native;
  std::unique_ptr<Native> native_;
  bool frameDue_ = true;
};

} // namespace zuvi
