#pragma once

#include <ZuviSDK/LiveChatDelegate.h>
#include "kit/Helper/LiveChat/LiveChatOverlayViewController.h"
#include "kit/Helper/LiveChat/PassThroughWindow.h"

namespace zuvi {

/// The implementation of `LiveChat`: owns the floating window with its screen and the bridge to the
/// page, and calls the delegate. Main queue only.
class Manager final : public std::enable_shared_from_this<Manager>,
                      public WebViewBridgeDelegate,
                      public LiveChatOverlayViewControllerDelegate {
public:
  using Completion = ChatView::Completion;

  /// Made on first use and kept as long as the process.
  static Manager& sharedInstance();
  Manager();
  void didMake();

  // Every write is passed on to the overlay.
  Observed<std::optional<LiveChatConfiguration>> configuration;
  Observed<std::optional<CustomVariables>> customVariables;
  std::weak_ptr<LiveChatDelegate> delegate;

  const std::shared_ptr<LiveChatOverlayViewController>& overlayViewController() const {
    return overlayViewController_;
  }
  const std::shared_ptr<PassThroughWindow>& window() const { return window_; }
  const std::shared_ptr<WebViewBridge>& webViewBridge() const { return webViewBridge_; }

  void setVariable(const std::string& key, const std::string& value);
  void presentChat(bool animated, const Completion& completion);
  void dismissChat(bool animated, const Completion& completion);
  void clearSession();

  void received(const LiveChatMessage& message) override;
  void hideChatWindow() override;
  void leftByEscape() override;
  void closedChatView() override;
  void handleURL(const URL& url) override;

private:
  void presented(bool finished, const Completion& completion);
  void dismissed(bool finished, const Completion& completion);
  void giveBackTheKey();

  std::shared_ptr<LiveChatOverlayViewController> overlayViewController_;
  std::shared_ptr<PassThroughWindow> window_;
  std::weak_ptr<UIView> previousFocus_;
  std::weak_ptr<UIView> previousKeyWindow_; ///< may go while the chat is open
  std::shared_ptr<WebViewBridge> webViewBridge_;
  NotificationObserver activeObserver_;
};

} // namespace zuvi
