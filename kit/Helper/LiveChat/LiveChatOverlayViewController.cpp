#include "kit/Helper/LiveChat/LiveChatOverlayViewController.h"

#include <ZuviSDK/UIKit/UIAlertController.h>
#include "kit/Helper/LiveChat/LiveChatState.h"
#include "kit/Helper/ZVBundle.h"
#include "kit/Helper/ZVLocalization.h"
#include "platform/UIKit/UIScreen.h"

namespace zuvi {

LiveChatOverlayViewController::LiveChatOverlayViewController()
    : webViewBridge(nullptr, [this] { chatView_->webViewBridge = *webViewBridge; }),
      configuration(std::nullopt, [this] { chatView_->setConfiguration(*configuration); }),
      customVariables(std::nullopt, [this] { chatView_->customVariables = *customVariables; }),
      chatView_(make<ChatView>(UIScreen::main().bounds(), zvKitBundle())) {}

void LiveChatOverlayViewController::viewDidLoad() {
  UIViewController::viewDidLoad();
  chatView_->delegate = std::static_pointer_cast<LiveChatOverlayViewController>(shared_from_this());
  preloadingWindow_->setAlpha(0);
  preloadingWindow_->setWindowLevel(UIWindow::levelNormal - 100.0);
  preloadingWindow_->addSubview(chatView_);
}

void LiveChatOverlayViewController::presentChat(bool animated,
                                                const ChatView::Completion& completion) {
  view()->addSubview(chatView_); // removes it from the other window
  chatView_->setFrame(view()->bounds());
  chatView_->setAutoresizingMask(FlexibleWidth | FlexibleHeight);
  const std::weak_ptr<UIViewController> weak = weak_from_this();
  chatView_->presentChat(animated, [this, weak, completion](bool finished) {
    const auto alive = weak.lock();
    if (!alive || !completion) return;
    LiveChatState::markChatAsOpened();
    chatState_ = ChatState::Presented;
    completion(finished);
  });
}

void LiveChatOverlayViewController::dismissChat(bool animated,
                                                const ChatView::Completion& completion) {
  const std::weak_ptr<UIViewController> weak = weak_from_this();
  chatView_->dismissChat(animated, [this, weak, completion](bool finished) {
    const auto alive = weak.lock();
    if (!alive) return;
    if (finished) {
      chatState_ = ChatState::Hidden;
      preloadingWindow_->addSubview(chatView_);
    }
    if (completion) completion(finished);
  });
}

void LiveChatOverlayViewController::clearSession() {
  chatView_->clearSession();
}

bool LiveChatOverlayViewController::accessibilityPerformEscape() {
  if (!chatView_->webView())
    chatView_->close();
  else if (const auto to = delegate.lock())
    to->leftByEscape();
  return true;
}

void LiveChatOverlayViewController::closedChatView() {
  chatState_ = ChatState::Hidden;
  preloadingWindow_->addSubview(chatView_);
  if (const auto to = delegate.lock()) to->closedChatView();
}

void LiveChatOverlayViewController::tell(const std::string& text) {
  if (chatState_ != ChatState::Presented || presentedViewController()) return;
  const auto alert = make<UIAlertController>("", text);
  alert->addAction({localized("close"), UIAlertAction::Style::Cancel, {}});
  present(alert, true);
}

void LiveChatOverlayViewController::handleURL(const URL& url) {
  if (const auto to = delegate.lock()) to->handleURL(url);
}

} // namespace zuvi
