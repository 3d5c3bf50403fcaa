#pragma once

#include <ZuviSDK/Dispatch/DelayedCalls.h>
#include <ZuviSDK/Foundation/Bundle.h>
#include "kit/Helper/LiveChat/BuildUrl.h"
#include "kit/Helper/LiveChat/ChatViewDelegate.h"
#include "kit/Helper/LiveChat/JSONRequestCache.h"
#include "kit/Helper/LiveChat/KeyboardNotification.h"
#include "kit/Helper/LiveChat/LiveChatConfiguration.h"
#include "kit/Helper/LiveChat/LoadingView.h"
#include "kit/Helper/LiveChat/WebViewBridge.h"
#include "platform/WebKit/WKWebView.h"

#include <functional>
#include <vector>

namespace zuvi {

/// The name of the message handler to which the page posts.
inline constexpr const char* iOSMessageHandlerName = "iosMobileWidget";

/// The chat page, under a loading view that shows progress or an error. Decides when the page is
/// loaded, moves it in and out, keeps it clear of bars and keyboard, and decides where links open.
/// Made with `make<ChatView>(...)`.
class ChatView final : public UIView,
                       public WKNavigationDelegate,
                       public WKUIDelegate,
                       public WKScriptMessageHandler,
                       public LoadingViewDelegate {
public:
  using Completion = std::function<void(bool finished)>;

  /// `resources` contains the script that runs in the page.
  ChatView(const CGRect& frame, std::shared_ptr<const Bundle> resources);
  void didMake();

  std::weak_ptr<ChatViewDelegate> delegate;
  const std::optional<LiveChatConfiguration>& configuration() const { return configuration_; }
  /// Reloads the page when it differs from the previous one; the first one loads nothing.
  void setConfiguration(std::optional<LiveChatConfiguration> configuration);
  /// Every write reloads the page.
  Observed<std::optional<CustomVariables>> customVariables;
  Observed<std::shared_ptr<WebViewBridge>> webViewBridge;

  /// Null where no page can be shown.
  const std::shared_ptr<WKWebView>& webView() const { return webView_; }
  const std::shared_ptr<LoadingView>& loadingView() const { return loadingView_; }
  bool animating() const { return animating_; }

  /// Without a web view both do nothing, and `completion` is never called. It is also not called
  /// for a dismissal during one of these movements.
  void presentChat(bool animated, const Completion& completion = {});
  void dismissChat(bool animated, const Completion& completion = {});
  /// Removes the chat's data from this machine and reloads the page.
  void clearSession();

  // From the loading view.
  void reload() override;
  void close() override;

  void layoutSubviews() override;

  // From the web view.
  WKNavigationActionPolicy decidePolicy(WKWebView& webView,
                                        const WKNavigationAction& action) override;
  void didCommit(WKWebView& webView) override;
  void didFinish(WKWebView& webView) override;
  void didFail(WKWebView& webView, const Error& error) override;
  void didFailProvisionalNavigation(WKWebView& webView, const Error& error) override;
  void webContentProcessDidTerminate(WKWebView& webView) override;
  void didChangeResponsiveness(WKWebView& webView, bool responds) override;
  std::shared_ptr<WKWebView> createWebView(WKWebView& webView,
                                           const WKWebViewConfiguration& configuration,
                                           const WKNavigationAction& action) override;
  void webViewDidClose(WKWebView& webView) override;
  void didRefuseFiles(WKWebView& webView) override;
  void didReceiveScriptMessage(const WKScriptMessage& message) override;

private:
  std::weak_ptr<ChatView> weak();
  void makeWebView();
  void registerNotifications();
  void chatHidden();
  void applicationDidBecomeActiveNotification();
  void applicationWillResignActiveNotification();
  void keyboardWillChangeFrameNotification(const Notification& notification);
  void keyboardDidChangeFrameNotification(const Notification& notification);
  void delayedKeyboardWillChangeFrame(const KeyboardNotification& notification);
  void delayedKeyboardDidChangeFrame(const KeyboardNotification& notification);
  CGRect frameForSafeAreaInsets() const;
  void triggerResize();
  void displayLoadingError(const std::string& message);
  void displayLoadingError(const Error& error);
  void takeKeysFromPage();
  void giveKeysToPage();
  void showWayOut();
  void dropPopUps();
  void delayedReload();
  void reloadWithDelay();
  void receivedTemplate(const std::optional<std::string>& templateURL,
                        const std::optional<Error>& error);
  void load(const URLRequest& request);
  void showAsLoading();
  void moveOutOfSight();
  void presented(bool finished, const Completion& completion);
  void dismissed(bool finished, const Completion& completion);
  bool isPageInSight() const { return webView_ && webView_->alpha() > 0; }

  std::shared_ptr<const Bundle> resources_;
  std::shared_ptr<WKWebView> webView_;
  std::shared_ptr<LoadingView> loadingView_ = make<LoadingView>();
  std::shared_ptr<JSONRequestCache> jsonCache_ = std::make_shared<JSONRequestCache>();
  bool animating_ = false; ///< while a present or dismiss movement runs
  int movement_ = 0;       ///< counts the presents
  /// The kit's close button. It lies over the page until the page sends a message to the bridge.
  std::shared_ptr<CloseButton> wayOut_;
  bool pageAskedFor_ = false; ///< loaded or loading, and has neither failed nor crashed
  bool pageSpeaks_ = false;   ///< it has sent a message since it was loaded
  bool pageResponds_ = true;
  bool pageHadKeys_ = false; ///< the page gets the keys back when it is there again
  std::optional<LiveChatConfiguration> configuration_;
  std::vector<NotificationObserver> observers_;
  DelayedCalls delayedCalls_;
};

} // namespace zuvi
