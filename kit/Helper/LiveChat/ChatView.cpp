#include "kit/Helper/LiveChat/ChatView.h"

#include <ZuviSDK/Foundation/Print.h>
#include <ZuviSDK/QuartzCore/AnimationCurve.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/ZVEndpoints.h>
#include "kit/Helper/LiveChat/LiveChatState.h"
#include "kit/Helper/LiveChat/WebViewAnimationCoordinator.h"
#include "kit/Helper/ZVLocalization.h"
#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/Utf8.h"
#include "platform/WebKit/WKWebsiteDataStore.h"

#include <utility>

namespace zuvi {

namespace {

constexpr const char* reloadCall = "delayed_reload";
constexpr double reloadDelay = 0.2; // seconds; several writes in this time cause one load
constexpr int maxLength = 2000;     // of the page's address, in characters
constexpr const char* userAgentSuffix = " WebView_Widget_iOS/2.0.7";

/// Advice for the person. The transport's own error text goes to the log.
std::string adviceFor(const Error& error) {
  if (error.domain != NSURLErrorDomain) return localized("chatFailed");
  switch (error.code) {
  case NSURLErrorSecureConnectionFailed:
  case NSURLErrorServerCertificateUntrusted:
    return localized("chatNotSecure");
  case NSURLErrorTimedOut:
  case NSURLErrorCannotFindHost:
  case NSURLErrorCannotConnectToHost:
  case NSURLErrorNetworkConnectionLost:
    return localized("chatUnreachable");
  default:
    return localized("chatFailed");
  }
}

/// Above a page, at its top right corner.
std::shared_ptr<CloseButton> addCloseButton(WKWebView& page, std::function<void()> close) {
  auto button = make<CloseButton>();
  button->outletName = "wayOut";
  button->setBackgroundColor(UIColor::white().withAlpha(0.9)); // the page may be dark
  button->layer()->setCornerRadius(22.0);
  button->setFrame({page.bounds().width - 44.0 - 10.0, 10.0, 44.0, 44.0});
  button->setAutoresizingMask(FlexibleLeftMargin | FlexibleBottomMargin);
  button->accessibilityLabel = localized("close");
  button->addTarget(UIControlEvent::TouchUpInside, std::move(close));
  page.addSubview(button);
  return button;
}

CGRect shortenedByOne(const CGRect& frame) {
  return {frame.x, frame.y, frame.width, frame.height - 1.0};
}

} // namespace

ChatView::ChatView(const CGRect& frame, std::shared_ptr<const Bundle> resources)
    : UIView(frame), customVariables(std::nullopt, [this] { reloadWithDelay(); }),
      webViewBridge(nullptr,
                    [this] {
                      if (*webViewBridge) (*webViewBridge)->webView = webView_;
                    }),
      resources_(std::move(resources)) {}

std::weak_ptr<ChatView> ChatView::weak() {
  return std::static_pointer_cast<ChatView>(shared_from_this());
}

void ChatView::didMake() {
  if (WKWebView::isAvailable()) makeWebView();
  setBackgroundColor(UIColor::clear());
  loadingView_->outletName = "loadingView";
  loadingView_->setAutoresizingMask(FlexibleWidth | FlexibleHeight);
  loadingView_->delegate = weak();
  loadingView_->setFrame(bounds());
  loadingView_->startAnimation();
  addSubview(loadingView_);
  registerNotifications();
}

void ChatView::makeWebView() {
  WKWebViewConfiguration configuration;
  configuration.userContentController->addScriptMessageHandler(weak(), iOSMessageHandlerName);
  const auto path = resources_->path("LiveChatWidget", "js");
  const auto source = path ? FileManager::contents(*path) : std::nullopt;
  if (source && isValidUtf8(source->view()))
    configuration.userContentController->addUserScript(
        {source->string(), WKUserScriptInjectionTime::AtDocumentStart, true});
  else
    print("Exception while injecting LiveChatWidget.js script");

  webView_ = make<WKWebView>(frame(), configuration);
  webView_->outletName = "webView";
  insertSubview(webView_, 0); // below the loading view, also if that was added before
  webView_->setAutoresizingMask(FlexibleWidth | FlexibleHeight);
  webView_->navigationDelegate = weak();
  webView_->uiDelegate = weak();
  webView_->scrollView()->minimumZoomScale = 1.0;
  webView_->scrollView()->maximumZoomScale = 1.0;
  webView_->setOpaque(false);
  webView_->setBackgroundColor(UIColor::white());
  webView_->setFrame(frame());
  webView_->setAlpha(0);
  wayOut_ = addCloseButton(*webView_, [this] { close(); });
  if (*webViewBridge) (*webViewBridge)->webView = webView_;
}

void ChatView::registerNotifications() {
  const auto observe = [this](const char* name, std::function<void(const Notification&)> handler) {
    observers_.push_back(NotificationCenter::defaultCenter().observe(name, std::move(handler)));
  };
  const auto willChange = [this](const Notification& notification) {
    keyboardWillChangeFrameNotification(notification);
  };
  observe(UIApplicationDidBecomeActiveNotification,
          [this](const auto&) { applicationDidBecomeActiveNotification(); });
  observe(UIApplicationWillResignActiveNotification,
          [this](const auto&) { applicationWillResignActiveNotification(); });
  observe(UIKeyboardWillShowNotification, willChange);
  observe(UIKeyboardWillHideNotification, willChange);
  observe(UIKeyboardDidChangeFrameNotification, [this](const Notification& notification) {
    keyboardDidChangeFrameNotification(notification);
  });
}

void ChatView::layoutSubviews() {
  UIView::layoutSubviews();
  if (webView_) loadingView_->setFrame(webView_->frame());
}

// Loading

void ChatView::setConfiguration(std::optional<LiveChatConfiguration> configuration) {
  const auto old = std::exchange(configuration_, std::move(configuration));
  if (old && configuration_ && *old != *configuration_) reloadWithDelay();
}

void ChatView::reloadWithDelay() {
  delayedCalls_.perform(reloadCall, reloadDelay, [this] { delayedReload(); });
}

void ChatView::delayedReload() {
  delayedCalls_.cancel(reloadCall);
  const auto& running = jsonCache_->currentTask();
  if (running && running->state() == URLSessionTaskState::Running) return; // it will answer
  showAsLoading();
  jsonCache_->request([weak = weak()](const auto& templateURL, const auto& error) {
    DispatchQueue::main().async([weak, templateURL, error] {
      if (const auto self = weak.lock()) self->receivedTemplate(templateURL, error);
    });
  });
}

void ChatView::receivedTemplate(const std::optional<std::string>& templateURL,
                                const std::optional<Error>& error) {
  if (error) return displayLoadingError(*error);
  if (!templateURL) return displayLoadingError(localized("chatTemplateMissing"));
  if (!configuration_) return displayLoadingError(localized("chatConfigurationMissing"));
  const auto url = buildUrl(*templateURL, *configuration_, *customVariables, maxLength);
  if (!webView_ && WKWebView::isAvailable()) makeWebView(); // there was no screen before
  if (!url || !webView_ || !WKWebView::isAvailable()) {
    print("error: Invalid url");
    print(url ? "The support chat can't be shown, as " + WKWebView::problem()
              : "The chat's template gives no address: " + *templateURL);
    return displayLoadingError(localized("chatAddressInvalid"));
  }
  load(URLRequest(*url));
}

void ChatView::load(const URLRequest& request) {
  // Asking for the user agent starts the browser. A chat that was never opened must not do that.
  if (!LiveChatState::isChatOpenedBefore()) return;
  pageAskedFor_ = true;
  webView_->setCustomUserAgent({}); // otherwise it would grow with every load
  webView_->evaluateJavaScript(
      "navigator.userAgent", [weak = weak(), request](const std::optional<Value>& result,
                                                      const std::optional<Error>& error) {
        DispatchQueue::main().async([weak, request, result, error] {
          const auto self = weak.lock();
          if (!self) return;
          const std::string* userAgent = result ? result->string() : nullptr;
          if (!userAgent) self->pageAskedFor_ = false;
          if (error) return self->displayLoadingError(*error); // no browser started
          if (!userAgent) return;
          self->webView_->setCustomUserAgent(*userAgent + userAgentSuffix);
          if (LiveChatState::isChatOpenedBefore()) self->webView_->load(request);
        });
      });
}

void ChatView::showAsLoading() {
  loadingView_->setAlpha(1.0);
  loadingView_->startAnimation();
}

void ChatView::reload() {
  if (!webView_) return;
  showAsLoading();
  webView_->reload();
}

void ChatView::displayLoadingError(const std::string& message) {
  DispatchQueue::main().async([weak = weak(), message] {
    if (const auto self = weak.lock()) self->loadingView_->displayLoadingError(message);
  });
}

void ChatView::displayLoadingError(const Error& error) {
  print("The chat did not load: " + error.description);
  displayLoadingError(adviceFor(error));
}

void ChatView::clearSession() {
  if (!LiveChatState::isChatOpenedBefore()) return; // there is no data, and no browser must start
  WKWebsiteDataStore& store = WKWebsiteDataStore::defaultStore();
  store.fetchDataRecords([weak = weak(), &store](const std::vector<WKWebsiteDataRecord>& records) {
    for (const WKWebsiteDataRecord& record : records) {
      const auto names = [&record](const std::string& domain) {
        return !domain.empty() && record.displayName.find(domain) != std::string::npos;
      };
      if (!names("livechat") && !names(ZVEndpoints::chatDomain())) continue;
      store.removeData({record}, [weak] {
        if (const auto self = weak.lock()) self->reloadWithDelay();
      });
    }
  });
}

// In and out

void ChatView::presentChat(bool animated, const Completion& completion) {
  if (!webView_ && WKWebView::isAvailable()) makeWebView(); // there was no screen before
  if (!webView_) return;
  WKWebView::prepare(); // while the address is fetched
  // The load itself comes later and reads this flag. The page of the hidden window may have failed,
  // crashed, or never been loaded.
  if (!LiveChatState::isChatOpenedBefore() || !pageAskedFor_) delayedReload();
  LiveChatState::markChatAsOpened();
  const int movement = ++movement_;
  const auto inSight = [this] {
    webView_->setFrame(frameForSafeAreaInsets());
    loadingView_->setFrame(webView_->frame());
    webView_->setAlpha(1.0);
  };
  if (!animated) {
    inSight();
    presented(true, completion);
    return;
  }
  animating_ = true;
  webView_->setFrame({0, bounds().height, bounds().width, bounds().height});
  loadingView_->setFrame(webView_->frame());
  UIView::animate(0.5, 0, {AnimationCurve::Kind::Spring, 0.7, 0}, inSight,
                  [weak = weak(), completion, movement](bool finished) {
                    const auto self = weak.lock();
                    if (!self) return;
                    if (movement == self->movement_) return self->presented(finished, completion);
                    if (completion) completion(finished); // a later present has replaced this one
                  });
}

void ChatView::presented(bool finished, const Completion& completion) {
  // Making it one point smaller and larger again makes the page lay itself out.
  webView_->setFrame(shortenedByOne(frameForSafeAreaInsets()));
  DispatchQueue::main().asyncAfter(0.1, [weak = weak()] {
    const auto self = weak.lock();
    if (self && self->isPageInSight()) self->webView_->setFrame(self->frameForSafeAreaInsets());
  });
  animating_ = false;
  if (finished && *webViewBridge) (*webViewBridge)->postFocusEvent();
  if (completion) completion(finished);
}

void ChatView::moveOutOfSight() {
  webView_->setFrame({0, bounds().height, bounds().width, bounds().height});
  loadingView_->setFrame(webView_->frame());
  webView_->setAlpha(0);
}

void ChatView::dismissChat(bool animated, const Completion& completion) {
  if (!webView_ || animating_) return;
  endEditing(true);
  if (!animated) {
    moveOutOfSight();
    dismissed(true, completion);
    return;
  }
  animating_ = true;
  UIView::animate(
      0.2, 0, {AnimationCurve::Kind::EaseOut}, [this] { moveOutOfSight(); },
      [weak = weak(), completion](bool finished) {
        if (const auto self = weak.lock()) self->dismissed(finished, completion);
      });
}

void ChatView::dismissed(bool finished, const Completion& completion) {
  animating_ = false;
  if (finished) {
    if (*webViewBridge) (*webViewBridge)->postBlurEvent();
    chatHidden();
  }
  if (completion) completion(finished);
}

void ChatView::chatHidden() {
  if (const auto to = delegate.lock()) to->closedChatView();
}

void ChatView::close() {
  // Without a page there is nothing to move out, but the person must still be able to leave.
  if (!webView_) return chatHidden();
  dismissChat(true, [weak = weak()](bool finished) {
    const auto self = weak.lock();
    if (finished && self) self->chatHidden();
  });
}

// Bars and keyboard

CGRect ChatView::frameForSafeAreaInsets() const {
  const UIEdgeInsets insets = safeAreaInsets();
  return {insets.left, insets.top, bounds().width - insets.left - insets.right,
          bounds().height - insets.top - insets.bottom};
}

void ChatView::triggerResize() {
  if (!webView_) return;
  const CGRect frame = frameForSafeAreaInsets();
  webView_->setFrame(shortenedByOne(frame));
  webView_->setFrame(frame);
}

void ChatView::keyboardWillChangeFrameNotification(const Notification& notification) {
  delayedCalls_.cancelAll();
  delayedCalls_.perform("delayedKeyboardWillChangeFrame", 0,
                        [this, keyboard = KeyboardNotification(notification)] {
                          delayedKeyboardWillChangeFrame(keyboard);
                        });
}

void ChatView::keyboardDidChangeFrameNotification(const Notification& notification) {
  delayedCalls_.cancelAll();
  delayedCalls_.perform("delayedKeyboardDidChangeFrame", 0,
                        [this, keyboard = KeyboardNotification(notification)] {
                          delayedKeyboardDidChangeFrame(keyboard);
                        });
}

// While the page moves in or out it is not changed: a movement that is cut short would leave the
// chat neither shown nor hidden. The end of the movement lays the page out.

void ChatView::delayedKeyboardWillChangeFrame(const KeyboardNotification& notification) {
  if (webView_ && !animating_)
    WebViewAnimationCoordinator().coordinateAnimation(webView_, shared_from_this(), notification);
}

void ChatView::delayedKeyboardDidChangeFrame(const KeyboardNotification&) {
  if (!animating_) triggerResize();
}

// The application

void ChatView::applicationDidBecomeActiveNotification() {
  if (!webView_ && WKWebView::isAvailable()) { // there was no screen before
    makeWebView();
    if (configuration_) reloadWithDelay();
  }
  if (isPageInSight() && *webViewBridge) (*webViewBridge)->postFocusEvent();
}

void ChatView::applicationWillResignActiveNotification() {
  if (isPageInSight() && *webViewBridge) (*webViewBridge)->postBlurEvent();
}

// The page

WKNavigationActionPolicy ChatView::decidePolicy(WKWebView&, const WKNavigationAction& action) {
  if (action.navigationType != WKNavigationType::LinkActivated || !action.url)
    return WKNavigationActionPolicy::Allow;
  UIApplication& application = UIApplication::shared();
  if (!application.canOpenURL(*action.url)) return WKNavigationActionPolicy::Allow;
  // A script that clicks a link must not start programs.
  if (!action.byPerson || !isPageInSight()) return WKNavigationActionPolicy::Cancel;
  if (const auto to = delegate.lock())
    to->handleURL(*action.url);
  else
    application.openURL(*action.url);
  return WKNavigationActionPolicy::Cancel;
}

std::shared_ptr<WKWebView> ChatView::createWebView(WKWebView& webView,
                                                   const WKWebViewConfiguration& configuration,
                                                   const WKNavigationAction& action) {
  if (action.hasTargetFrame) return nullptr;
  auto opened = make<WKWebView>(webView.frame(), configuration);
  opened->uiDelegate = weak();
  webView.addSubview(opened);
  addCloseButton(*opened, [popUp = opened.get()] {
    const auto alive = popUp->shared_from_this(); // until the touch has been delivered
    popUp->removeFromSuperview();
  });
  return opened;
}

void ChatView::webViewDidClose(WKWebView& webView) {
  // The chat's own page can only close the whole chat: without a page there would be no way out.
  if (&webView == webView_.get()) return dismissChat(true, {});
  webView.removeFromSuperview();
}

void ChatView::didRefuseFiles(WKWebView&) {
  if (const auto to = delegate.lock()) to->tell(localized("chatTakesNoFiles"));
}

/// The windows of the previous page are closed with it. It is not known yet what the new page is:
/// the chat, a server's error, or the log-in page of a network.
void ChatView::didCommit(WKWebView&) {
  dropPopUps();
  pageSpeaks_ = false;
  pageResponds_ = true;
  showWayOut();
}

void ChatView::dropPopUps() {
  const auto above = webView_->subviews(); // a copy
  for (const auto& view : above)
    if (view != wayOut_) view->removeFromSuperview();
}

void ChatView::showWayOut() {
  wayOut_->accessibilityLabel = localized("close"); // the language may have come meanwhile
  wayOut_->setHidden(pageSpeaks_ && pageResponds_);
}

/// Keys that go to a page that crashed or hangs are lost, also those that close the chat.
void ChatView::takeKeysFromPage() {
  UIApplication& application = UIApplication::shared();
  if (!webView_ || application.firstResponder() != webView_.get()) return;
  pageHadKeys_ = true;
  application.setFirstResponder(nullptr);
}

void ChatView::giveKeysToPage() {
  UIApplication& application = UIApplication::shared();
  if (std::exchange(pageHadKeys_, false) && isPageInSight() && !application.firstResponder())
    application.setFirstResponder(webView_.get());
}

void ChatView::didFinish(WKWebView&) {
  giveKeysToPage();
  if (webView_ && webView_->alpha() == 0 && *webViewBridge) (*webViewBridge)->postBlurEvent();
  UIView::animate(0.3, 1.0, {}, [this] { loadingView_->setAlpha(0); });
}

void ChatView::didFail(WKWebView&, const Error& error) {
  print("Did fail navigation error: " + error.description);
}

void ChatView::didFailProvisionalNavigation(WKWebView&, const Error& error) {
  loadingView_->setAlpha(1.0);
  if (error.domain == NSURLErrorDomain && error.code == NSURLErrorCancelled) return;
  pageAskedFor_ = false;
  takeKeysFromPage();
  print("The chat did not load: " + error.description);
  loadingView_->displayLoadingError(adviceFor(error));
}

void ChatView::webContentProcessDidTerminate(WKWebView&) {
  dropPopUps();
  pageAskedFor_ = false;
  takeKeysFromPage();
  // The loading view has faded out, and with it the buttons to reload and close.
  loadingView_->setAlpha(1.0);
  loadingView_->displayLoadingError(localized("chatStopped"));
}

void ChatView::didChangeResponsiveness(WKWebView&, bool responds) {
  pageResponds_ = responds;
  responds ? giveKeysToPage() : takeKeysFromPage();
  showWayOut();
}

void ChatView::didReceiveScriptMessage(const WKScriptMessage& message) {
  if (message.webView != webView_.get()) return; // from a window that the page opened
  const Value::Dictionary* dictionary = message.body.dictionary();
  if (!dictionary) return;
  if (stringValue(*dictionary, "messageType")) {
    pageSpeaks_ = true;
    showWayOut();
  }
  if (*webViewBridge) (*webViewBridge)->handle(*dictionary);
}

} // namespace zuvi
