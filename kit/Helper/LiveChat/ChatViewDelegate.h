#pragma once

#include <ZuviSDK/Foundation/URL.h>

namespace zuvi {

/// Does what the chat view can't do itself.
class ChatViewDelegate {
public:
  virtual ~ChatViewDelegate() = default;
  virtual void closedChatView() = 0;
  /// A link that leads out of the chat; the chat doesn't follow it.
  virtual void handleURL(const URL& url) = 0;
  /// Shows a text to the person, over the page.
  virtual void tell(const std::string& text) = 0;
};

} // namespace zuvi
