#pragma once

#include "platform/Foundation/URL.h"

namespace zuvi {

struct LiveChatMessage;

/// Who hears of the support chat. Main queue only.
class LiveChatDelegate {
public:
  virtual ~LiveChatDelegate() = default;
  virtual void received(const LiveChatMessage& message) = 0;
  /// A link that leads out of the chat.
  virtual void handleURL(const URL& url) = 0;
};

} // namespace zuvi
