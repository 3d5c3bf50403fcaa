#pragma once

#include "platform/Export.h"
#include "platform/Foundation/Value.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zuvi {

enum class WKUserScriptInjectionTime { AtDocumentStart, AtDocumentEnd };

/// A script of the program's own that runs in every page.
struct WKUserScript {
  std::string source;
  WKUserScriptInjectionTime injectionTime = WKUserScriptInjectionTime::AtDocumentStart;
  bool forMainFrameOnly = true;
};

/// What a page posted through `window.webkit.messageHandlers.<name>.postMessage(body)`.
struct WKScriptMessage {
  std::string name;
  Value body;
};

/// Hears what pages post. Main queue.
class ZUVI_API WKScriptMessageHandler {
public:
  virtual ~WKScriptMessageHandler() = default;
  virtual void didReceiveScriptMessage(const WKScriptMessage& message) = 0;
};

/// Scripts and message handlers of the pages of one configuration. Both hold for pages that are
/// made afterwards.
class WKUserContentController {
public:
  void addUserScript(WKUserScript script) { userScripts_.push_back(std::move(script)); }
  void addScriptMessageHandler(std::weak_ptr<WKScriptMessageHandler> handler,
                               const std::string& name) {
    handlers_[name] = std::move(handler);
  }
  const std::vector<WKUserScript>& userScripts() const { return userScripts_; }
  const std::map<std::string, std::weak_ptr<WKScriptMessageHandler>>& handlers() const {
    return handlers_;
  }

private:
  std::vector<WKUserScript> userScripts_;
  std::map<std::string, std::weak_ptr<WKScriptMessageHandler>> handlers_;
};

struct WKWebViewConfiguration {
  std::shared_ptr<WKUserContentController> userContentController =
      std::make_shared<WKUserContentController>();
};

} // namespace zuvi
