#include <ZuviSDK/LiveChat.h>

#include "kit/Helper/LiveChat/Manager.h"
#include "kit/Helper/LiveChat/UnreadMessagesCounter.h"
#include "platform/Dispatch/AssertMainQueue.h"
#include "platform/WebKit/WKWebView.h"

namespace zuvi {

Observed<std::optional<std::string>> LiveChat::licenseId(std::nullopt, &updateConfiguration);
Observed<std::optional<std::string>> LiveChat::groupId(std::nullopt, &updateConfiguration);
Observed<std::optional<std::string>> LiveChat::name(std::nullopt, &updateConfiguration);
Observed<std::optional<std::string>> LiveChat::email(std::nullopt, &updateConfiguration);
Observed<std::weak_ptr<LiveChatDelegate>> LiveChat::delegate({}, [] {
  Manager::sharedInstance().delegate = *delegate;
});

void LiveChat::updateConfiguration() {
  if (!*licenseId) return;
  Manager::sharedInstance().configuration = LiveChatConfiguration{
      **licenseId, groupId->value_or("0"), name->value_or(""), email->value_or("")};
}

static std::optional<CustomVariables>& keptVariables() {
  static auto* kept = new std::optional<CustomVariables>;
  return *kept;
}

const std::optional<CustomVariables>& LiveChat::allCustomVariables() {
  return keptVariables() ? keptVariables() : *Manager::sharedInstance().customVariables;
}

void LiveChat::setAllCustomVariables(const std::optional<CustomVariables>& variables) {
  keptVariables() = variables;
}

Observed<bool> LiveChat::requiresSandbox(false,
                                         [] { WKWebView::setRequiresSandbox(*requiresSandbox); });

std::optional<bool> LiveChat::isSandboxed() {
  assertMainQueue("The support chat");
  return WKWebView::isSandboxed();
}

bool LiveChat::isChatPresented() {
  return Manager::sharedInstance().overlayViewController()->chatState() == ChatState::Presented;
}

int LiveChat::unreadMessagesCount() {
  assertMainQueue("The support chat");
  return UnreadMessagesCounter::counterValue();
}

void LiveChat::setVariable(const std::string& key, const std::string& value) {
  Manager::sharedInstance().setVariable(key, value);
}

void LiveChat::presentChat(bool animated, const std::function<void(bool)>& completion) {
  Manager::sharedInstance().presentChat(animated, completion);
}

void LiveChat::dismissChat(bool animated, const std::function<void(bool)>& completion) {
  Manager::sharedInstance().dismissChat(animated, completion);
}

void LiveChat::clearSession() {
  Manager::sharedInstance().clearSession();
}

} // namespace zuvi
