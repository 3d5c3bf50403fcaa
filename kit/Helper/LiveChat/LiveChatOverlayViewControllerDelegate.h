#pragma once

#include <ZuviSDK/Foundation/URL.h>

namespace zuvi {

/// Who owns the window of the overlay.
class LiveChatOverlayViewControllerDelegate {
public:
  virtual ~LiveChatOverlayViewControllerDelegate() = default;
  virtual void closedChatView() = 0;
  /// Escape, with a page on show.
  virtual void leftByEscape() = 0;
  virtual void handleURL(const URL& url) = 0;
};

} // namespace zuvi
