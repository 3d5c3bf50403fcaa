#include "demo/core/ChatWatcher.h"

#include <ZuviSDK/LiveChat.h>

#include <utility>

namespace zuvi::demo {

void ChatWatcher::start() {
  timer_ = Timer::scheduled(0.02, Timer::Repeats::Yes, [this] { look(); });
}

void ChatWatcher::look() {
  const auto delegate = (*LiveChat::delegate).lock();
  if (delegate && delegate.get() != this) {
    owner_ = delegate;
    LiveChat::delegate = weak_from_this();
    hooks_.configured();
  }
  const bool presented = LiveChat::isChatPresented();
  if (std::exchange(presented_, presented) != presented) hooks_.stateChanged(presented);
}

void ChatWatcher::received(const LiveChatMessage& message) {
  hooks_.received(message);
  if (const auto owner = owner_.lock()) owner->received(message);
}

void ChatWatcher::handleURL(const URL& url) {
  if (const auto owner = owner_.lock()) owner->handleURL(url);
}

void ChatWatcher::chatPresented() {
  if (const auto owner = owner_.lock()) owner->chatPresented();
}

void ChatWatcher::chatDismissed() {
  if (const auto owner = owner_.lock()) owner->chatDismissed();
}

} // namespace zuvi::demo
