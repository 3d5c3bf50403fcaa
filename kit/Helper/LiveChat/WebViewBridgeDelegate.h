#pragma once

namespace zuvi {

struct LiveChatMessage;

/// Gets the messages of the chat page.
class WebViewBridgeDelegate {
public:
  virtual ~WebViewBridgeDelegate() = default;
  virtual void received(const LiveChatMessage& message) = 0;
  virtual void hideChatWindow() = 0;
};

} // namespace zuvi
