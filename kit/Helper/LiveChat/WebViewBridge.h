#pragma once

#include <ZuviSDK/Foundation/Observed.h>
#include <ZuviSDK/Foundation/Value.h>
#include "kit/Helper/LiveChat/WebViewBridgeDelegate.h"

#include <memory>
#include <string>
#include <vector>

namespace zuvi {

class WKWebView;

/// The link between the kit and the chat page. What the kit tells the page waits until the page has
/// said something itself. Main queue only.
class WebViewBridge {
public:
  WebViewBridge();

  std::weak_ptr<WKWebView> webView;
  std::weak_ptr<WebViewBridgeDelegate> delegate;

  /// Takes what the page posted. Wrong messages print a line and are dropped.
  void handle(const Value::Dictionary& message);
  void postFocusEvent();
  void postBlurEvent();

private:
  void post(const std::string& script);
  void flush();
  void handleNewMessage(const Value::Dictionary& message);

  std::vector<std::string> delayedMessages_;
  Observed<bool> webAppActive_; ///< never goes back to false
};

} // namespace zuvi
