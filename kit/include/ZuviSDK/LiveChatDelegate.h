#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/URL.h>

namespace zuvi {

struct LiveChatMessage;

/// Who hears of the support chat. Every operation is optional: one that is not overridden does
/// nothing. Main queue only.
class ZUVI_API LiveChatDelegate {
public:
  virtual ~LiveChatDelegate() = default;
  /// A message that was not seen before.
  virtual void received(const LiveChatMessage&) {}
  /// A link that leads out of the chat.
  virtual void handleURL(const URL&) {}
  /// The chat has come all the way in.
  virtual void chatPresented() {}
  /// The chat has gone, other than by the close button of the loading view.
  virtual void chatDismissed() {}
};

} // namespace zuvi
