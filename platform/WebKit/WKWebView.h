#pragma once

#include <ZuviSDK/Foundation/Error.h>
#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/Foundation/Value.h>
#include <ZuviSDK/UIKit/UIImage.h>
#include "platform/Foundation/URLSession.h"
#include "platform/UIKit/UIScrollView.h"
#include "platform/WebKit/WKDelegates.h"
#include "platform/WebKit/WKWebViewConfiguration.h"
#include "platform/WebKit/WebEngine.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zuvi {

/// A web page among the views. The page is made when it is first needed: by a load or a script,
/// which wait in their order while the engine is loaded. It lives as long as the view, wherever the
/// view is moved, and ends above the keyboard while that covers a part of the view. Main queue
/// only.
class WKWebView : public UIView, private WebPageClient {
public:
  /// The configuration is copied; its content controller is shared.
  WKWebView(const CGRect& frame, const WKWebViewConfiguration& configuration);
  ~WKWebView() override;

  /// Whether pages can be shown at all: there is a display and an engine. Starts nothing.
  static bool isAvailable();
  /// Why they can't, in one line with what mends it; empty when they can.
  static std::string problem();
  /// Whether pages run in a sandbox; absent while nobody knows yet, as no engine was started.
  static std::optional<bool> isSandboxed();
  /// False at start: where this machine allows no sandbox pages run without. True: none is made
  /// there.
  /// @{
  static bool requiresSandbox();
  static void setRequiresSandbox(bool required);
  /// @}
  /// Begins to load the engine, aside, so that the first page finds it there.
  static void prepare();

  std::weak_ptr<WKNavigationDelegate> navigationDelegate; ///< absent: all is allowed
  std::weak_ptr<WKUIDelegate> uiDelegate;                 ///< absent: no windows are opened

  /// Stands for the page's own scrolling; holds the limits of its zoom, which is never possible
  /// here: a page stays at its own size.
  const std::shared_ptr<UIScrollView>& scrollView() const { return scrollView_; }
  /// True at start. False: the page is drawn over the view's background instead of its own white.
  /// @{
  bool isOpaque() const { return opaque_; }
  void setOpaque(bool opaque);
  /// @}
  /// Empty, as at start: the engine's own.
  /// @{
  const std::string& customUserAgent() const { return customUserAgent_; }
  void setCustomUserAgent(const std::string& userAgent);
  /// @}

  /// Only an address and headers: a request with a body, and one for a file, fails.
  void load(const URLRequest& request);
  /// Nothing happens before the first load.
  void reload();
  /// Brings the result of a script, or why there is none.
  using ScriptCompletion =
      std::function<void(std::optional<Value> result, std::optional<Error> error)>;
  /// Runs `script` in the page. `completion`, if any, comes once, with the result or the error; a
  /// result without a form in `Value`, such as a function, is an error.
  void evaluateJavaScript(const std::string& script, ScriptCompletion completion = {});

  /// Of the page; absent before the first load has begun.
  std::optional<URL> url() const;
  /// Of the page; empty where it has none. It may come a moment after the page has finished.
  std::string title() const;

  /// What the page shows at this moment, from its top left corner, as a picture of that size in
  /// points at the screen's scale. Null when there is none.
  std::shared_ptr<const UIImage> drawHierarchy(CGSize size);

  void describe(Value::Dictionary& description) const override;
  /// Once there is a page: the first responder's page has the keyboard.
  bool canBecomeFirstResponder() const override;
  void didChangeFirstResponder(bool focused) override;
  void layoutSubviews() override;

private:
  WKNavigationActionPolicy decidePolicy(const WKNavigationAction& action) override;
  void didCommit() override;
  void didFinish() override;
  void didFail(const Error& error) override;
  void didFailProvisionalNavigation(const Error& error) override;
  void processDidTerminate() override;
  void didChangeResponsiveness(bool responds) override;
  void didReceiveScriptMessage(const WKScriptMessage& message) override;
  WebPage* createPage(const WKNavigationAction& action) override;
  void didClose() override;
  void didRefuseFiles() override;
  /// Given null when there can be no page.
  using PageWork = std::function<void(WebPage*)>;
  /// Makes the page when it is first needed. At once or, while the engine is loaded, later.
  void withPage(PageWork work);
  void workOff();
  void adopt(std::unique_ptr<WebPage> page);
  void keyboardMoved(const Notification& notification);
  void leaveRoomForKeyboard();

  WKWebViewConfiguration configuration_;
  std::shared_ptr<UIScrollView> scrollView_;
  bool opaque_ = true;
  std::string customUserAgent_;
  std::optional<double> keyboardTop_; ///< on the screen; absent: there is none
  std::vector<NotificationObserver> keyboard_;
  std::unique_ptr<WebPage> page_;
  std::deque<PageWork> waiting_;
};

} // namespace zuvi
