#pragma once

#include <ZuviSDK/Foundation/Value.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zuvi {

/// Before anything of the page is there, or once its document is.
enum class WKUserScriptInjectionTime { AtDocumentStart, AtDocumentEnd };

/// A script of the program's own that runs in every page.
struct WKUserScript {
  std::string source; ///< JavaScript
  /// When it runs in each page.
  WKUserScriptInjectionTime injectionTime = WKUserScriptInjectionTime::AtDocumentStart;
  bool forMainFrameOnly = true; ///< false: in each frame of a page
};

class WKWebView;

/// What a page's main frame posted through
/// `window.webkit.messageHandlers.NAME.postMessage(body)`. Frames within a page have no handlers.
struct WKScriptMessage {
  std::string name;                   ///< of the handler
  Value body;                         ///< what was posted
  const WKWebView* webView = nullptr; ///< whose page posted it
};

/// Hears what pages post. Main queue.
class WKScriptMessageHandler {
public:
  virtual ~WKScriptMessageHandler() = default;
  /// Comes in the order in which the page posted.
  virtual void didReceiveScriptMessage(const WKScriptMessage& message) = 0;
};

/// Scripts and message handlers of the pages of one configuration. Both hold for pages that are
/// made afterwards.
class WKUserContentController {
public:
  /// Scripts run in the order in which they were added.
  void addUserScript(WKUserScript script) { userScripts_.push_back(std::move(script)); }
  /// Makes `name` known to pages; an earlier handler of that name is replaced.
  void addScriptMessageHandler(std::weak_ptr<WKScriptMessageHandler> handler,
                               const std::string& name) {
    handlers_[name] = std::move(handler);
  }
  /// What was added so far.
  /// @{
  const std::vector<WKUserScript>& userScripts() const { return userScripts_; }
  const std::map<std::string, std::weak_ptr<WKScriptMessageHandler>>& handlers() const {
    return handlers_;
  }
  /// @}

private:
  std::vector<WKUserScript> userScripts_;
  std::map<std::string, std::weak_ptr<WKScriptMessageHandler>> handlers_;
};

/// What a web view is made with.
struct WKWebViewConfiguration {
  /// Never null. What is added to it after a page was made is not for that page.
  std::shared_ptr<WKUserContentController> userContentController =
      std::make_shared<WKUserContentController>();
};

} // namespace zuvi
