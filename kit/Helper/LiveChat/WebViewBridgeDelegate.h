#pragma once

namespace zuvi {

struct LiveChatMessage;

/// Who hears what the chat page says.
class WebViewBridgeDelegate {
public:
  virtual ~WebViewBridgeDelegate() = default;
  virtual void received(const LiveChatMessage& message) = 0;
  virtual void hideChatWindow() = 0;
};

} // namespace zuvi
