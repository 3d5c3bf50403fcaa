#include "kit/Helper/LiveChat/Manager.h"

#include <ZuviSDK/LiveChatMessage.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include "kit/Helper/LiveChat/UnreadMessagesCounter.h"
#include "platform/Dispatch/AssertMainQueue.h"
#include "platform/UIKit/UIScreen.h"

#include <utility>

namespace zuvi {

Manager& Manager::sharedInstance() {
  assertMainQueue("The support chat");
  // Never destroyed: objects that it observes may outlive `main`.
  static auto* shared = new std::shared_ptr<Manager>(make<Manager>());
  return **shared;
}

Manager::Manager()
    : configuration(std::nullopt,
                    [this] { overlayViewController_->configuration = *configuration; }),
      customVariables(std::nullopt,
                      [this] { overlayViewController_->customVariables = *customVariables; }),
      overlayViewController_(make<LiveChatOverlayViewController>()),
      window_(make<PassThroughWindow>()), webViewBridge_(std::make_shared<WebViewBridge>()) {}

void Manager::didMake() {
  window_->setBackgroundColor(UIColor::clear());
  window_->setFrame(UIScreen::main().bounds());
  window_->setWindowLevel(UIWindow::levelNormal + 1.0);
  window_->setRootViewController(overlayViewController_);
  webViewBridge_->delegate = weak_from_this();
  overlayViewController_->delegate = weak_from_this();
  overlayViewController_->webViewBridge = webViewBridge_;
  activeObserver_ = NotificationCenter::defaultCenter().observe(
      UIApplicationDidBecomeActiveNotification, [this](const Notification&) {
        if (const UIWindow* key = UIApplication::shared().keyWindow())
          window_->setFrame(key->frame());
      });
}

void Manager::setVariable(const std::string& key, const std::string& value) {
  CustomVariables variables = customVariables->value_or(CustomVariables());
  variables[key] = value;
  customVariables = std::move(variables);
}

void Manager::presentChat(bool animated, const Completion& completion) {
  UIWindow* key = UIApplication::shared().keyWindow();
  previousKeyWindow_ = key ? key->weak_from_this() : std::weak_ptr<UIView>();
  if (key != window_.get()) { // otherwise it is presented or moving in
    UIView* focused = UIApplication::shared().firstResponder();
    previousFocus_ = focused ? focused->weak_from_this() : std::weak_ptr<UIView>();
  }
  UIApplication::shared().setFirstResponder(nullptr); // keys must not go to views below the chat
  window_->makeKeyAndVisible();
  const std::weak_ptr<Manager> weak = weak_from_this();
  overlayViewController_->presentChat(animated, [weak, completion](bool finished) {
    if (const auto self = weak.lock()) self->presented(finished, completion);
  });
}

void Manager::presented(bool finished, const Completion& completion) {
  if (finished) {
    UIApplication::shared().moveFocusInto(*overlayViewController_);
    UnreadMessagesCounter::resetCounter();
    if (const auto to = delegate.lock()) to->chatPresented();
  }
  if (completion) completion(finished);
}

void Manager::dismissChat(bool animated, const Completion& completion) {
  const std::weak_ptr<Manager> weak = weak_from_this();
  overlayViewController_->dismissChat(animated, [weak, completion](bool finished) {
    if (const auto self = weak.lock()) self->dismissed(finished, completion);
  });
}

void Manager::dismissed(bool finished, const Completion& completion) {
  if (finished) {
    giveBackTheKey();
    UnreadMessagesCounter::resetCounter();
    if (const auto to = delegate.lock()) to->chatDismissed();
  }
  if (completion) completion(finished);
}

void Manager::giveBackTheKey() {
  if (const auto previous = std::exchange(previousKeyWindow_, {}).lock())
    static_cast<UIWindow&>(*previous).makeKeyAndVisible();
  window_->setVisible(false);
  UIApplication::shared().moveFocusBack(std::exchange(previousFocus_, {}));
}

void Manager::clearSession() {
  overlayViewController_->clearSession();
}

void Manager::closedChatView() {
  giveBackTheKey();
}

void Manager::leftByEscape() {
  dismissChat(true, {});
}

void Manager::hideChatWindow() {
  dismissChat(true, {});
}

void Manager::received(const LiveChatMessage& message) {
  if (!UnreadMessagesCounter::handleUnreadMessage(message.id)) return;
  if (const auto to = delegate.lock()) to->received(message);
}

void Manager::handleURL(const URL& url) {
  if (const auto to = delegate.lock()) to->handleURL(url);
}

} // namespace zuvi
