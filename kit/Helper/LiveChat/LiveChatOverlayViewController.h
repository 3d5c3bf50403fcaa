#pragma once

#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "kit/Helper/LiveChat/ChatState.h"
#include "kit/Helper/LiveChat/ChatView.h"
#include "kit/Helper/LiveChat/LiveChatOverlayViewControllerDelegate.h"

namespace zuvi {

/// The screen of the floating chat window. While the chat is hidden, its view is in a window that
/// is never shown, so that the page keeps running.
class LiveChatOverlayViewController final : public UIViewController, public ChatViewDelegate {
public:
  LiveChatOverlayViewController();

  // Every write is passed on to the chat view.
  Observed<std::shared_ptr<WebViewBridge>> webViewBridge;
  Observed<std::optional<LiveChatConfiguration>> configuration;
  Observed<std::optional<CustomVariables>> customVariables;
  std::weak_ptr<LiveChatOverlayViewControllerDelegate> delegate;

  const std::shared_ptr<ChatView>& chatView() const { return chatView_; }
  const std::shared_ptr<UIWindow>& preloadingWindow() const { return preloadingWindow_; }
  /// Hidden until the movement in has ended; presented until the movement out has ended.
  ChatState chatState() const { return chatState_; }

  /// The state changes only if there is a `completion`.
  void presentChat(bool animated, const ChatView::Completion& completion);
  void dismissChat(bool animated, const ChatView::Completion& completion);
  void clearSession();

  void viewDidLoad() override;
  bool shouldAutorotate() const override { return true; }
  unsigned supportedInterfaceOrientations() const override { return 30; }

  bool accessibilityPerformEscape() override;
  void closedChatView() override;
  void handleURL(const URL& url) override;
  void tell(const std::string& text) override;

private:
  std::shared_ptr<ChatView> chatView_;
  std::shared_ptr<UIWindow> preloadingWindow_ = make<UIWindow>();
  ChatState chatState_ = ChatState::Hidden;
};

} // namespace zuvi
