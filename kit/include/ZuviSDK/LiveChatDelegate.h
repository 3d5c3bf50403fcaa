#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/URL.h>

namespace zuvi {

struct LiveChatMessage;

/// Gets the support chat's messages, links and events. Every function is optional: one that is not
/// overridden does nothing. Main queue only.
class ZUVI_API LiveChatDelegate {
public:
  virtual ~LiveChatDelegate() = default;
  /// A new message came; the same message is reported once.
  virtual void received(const LiveChatMessage&) {}
  /// The person opened a link that leads out of the chat.
  virtual void handleURL(const URL&) {}
  /// The chat's movement in has ended.
  virtual void chatPresented() {}
  /// The chat's movement out has ended. Not called for the loading view's close button.
  virtual void chatDismissed() {}
};

} // namespace zuvi
