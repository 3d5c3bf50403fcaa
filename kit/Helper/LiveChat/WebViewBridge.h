#pragma once

#include <ZuviSDK/Foundation/Observed.h>
#include <ZuviSDK/Foundation/Value.h>
#include "kit/Helper/LiveChat/WebViewBridgeDelegate.h"

#include <memory>
#include <string>
#include <vector>

namespace zuvi {

class WKWebView;

/// Passes messages between the kit and the chat page. Messages to the page wait until the page has
/// sent one. Main queue only.
class WebViewBridge {
public:
  WebViewBridge();

  std::weak_ptr<WKWebView> webView;
  std::weak_ptr<WebViewBridgeDelegate> delegate;

  /// Handles a message of the page. A wrong message prints a line and is dropped.
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
