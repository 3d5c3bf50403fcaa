#pragma once

#include <ZuviSDK/Foundation/Error.h>
#include <ZuviSDK/Foundation/Value.h>
#include <ZuviSDK/UIKit/UIImage.h>
#include "platform/Foundation/URLSession.h"
#include "platform/WebKit/WKDelegates.h"
#include "platform/WebKit/WKWebViewConfiguration.h"
#include "platform/WebKit/WKWebsiteDataStore.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zuvi {

class UIView;
class WebPage;

/// Who is told what happens in a page: the web view that shows it. Main queue.
class WebPageClient {
public:
  virtual ~WebPageClient() = default;
  /// As `WKNavigationDelegate` hears it.
  /// @{
  virtual WKNavigationActionPolicy decidePolicy(const WKNavigationAction& action) = 0;
  virtual void didCommit() = 0;
  virtual void didFinish() = 0;
  virtual void didFail(const Error& error) = 0;
  virtual void didFailProvisionalNavigation(const Error& error) = 0;
  virtual void processDidTerminate() = 0;
  virtual void didChangeResponsiveness(bool responds) = 0;
  /// @}
  /// As `WKScriptMessageHandler` hears it.
  virtual void didReceiveScriptMessage(const WKScriptMessage& message) = 0;
  /// The page for a window that the page opens; null: none is opened.
  virtual WebPage* createPage(const WKNavigationAction& action) = 0;
  /// The page has closed itself.
  virtual void didClose() = 0;
  /// The page has asked for files, which it doesn't get.
  virtual void didRefuseFiles() = 0;
};

/// One page of an engine. Main queue only.
class WebPage {
public:
  virtual ~WebPage() = default;
  /// As `WKWebView` has it. `done` comes once, never before the call has returned.
  /// @{
  virtual void load(const URLRequest& request) = 0;
  virtual void reload() = 0;
  virtual void evaluate(const std::string& script,
                        std::function<void(std::optional<Value>, std::optional<Error>)> done) = 0;
  virtual void setCustomUserAgent(const std::string& userAgent) = 0;
  virtual void setOpaque(bool opaque) = 0;
  /// @}
  /// Whether keys go to the page.
  virtual void setFocused(bool) {}
  /// How much of the view's bottom is covered, in points: the page ends above it.
  virtual void setCoveredBottom(double) {}
  /// As `WKWebView` has it.
  /// @{
  virtual std::optional<URL> url() const = 0;
  virtual std::string title() const = 0;
  /// @}
  /// What the page shows now, from its top left corner; `size` in points, `scale` pixels a point.
  /// Null when there is none.
  virtual std::shared_ptr<const UIImage> picture(CGSize size, double scale) = 0;
};

/// What makes and runs pages: the browser engine of the machine, or a scripted one. Main queue
/// only.
class WebEngine {
public:
  virtual ~WebEngine() = default;
  /// Why no page can be made, with what mends it; empty when pages can be made. Asked often, so it
  /// starts nothing.
  virtual std::string problem() const { return {}; }
  /// As `WKWebView` has it.
  virtual std::optional<bool> isSandboxed() const { return std::nullopt; }
  /// Calls `ready` once: at once where pages can be made now or never, else when what it takes has
  /// been loaded.
  virtual void whenReady(std::function<void()> ready) { ready(); }
  /// A page drawn in `view`'s place. `opener`: the page whose request for a window this answers;
  /// null: none. Null when there can be no page, and before the engine is ready.
  virtual std::unique_ptr<WebPage> makePage(UIView& view, WebPageClient& client,
                                            const WKWebViewConfiguration& configuration,
                                            WebPage* opener) = 0;
  /// As `WKWebsiteDataStore` has it; with nothing when there can be no page.
  virtual void fetchDataRecords(std::function<void(std::vector<WKWebsiteDataRecord>)> done) = 0;
  /// As `WKWebsiteDataStore` has it.
  virtual void removeData(std::vector<WKWebsiteDataRecord> records, std::function<void()> done) = 0;

  /// What web views made afterwards run on; null: the machine's own, which also holds at start.
  static void install(std::shared_ptr<WebEngine> engine);
  /// What was installed, else the machine's own.
  static WebEngine& installed();
};

} // namespace zuvi
