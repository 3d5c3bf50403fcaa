#pragma once

#include <ZuviSDK/Foundation/URL.h>

namespace zuvi {

/// Implemented by the owner of the overlay's window.
class LiveChatOverlayViewControllerDelegate {
public:
  virtual ~LiveChatOverlayViewControllerDelegate() = default;
  virtual void closedChatView() = 0;
  /// The person pressed Escape while a page is visible.
  virtual void leftByEscape() = 0;
  virtual void handleURL(const URL& url) = 0;
};

} // namespace zuvi
