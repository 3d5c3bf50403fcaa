#pragma once

#include "platform/WebKit/WebModuleGtk.h"
#include "platform/WebKitGtk/PointerGtk.h"

#include <webkit/webkit.h>

namespace zuvi {

/// The engine: what all pages share.
class Engine final : public WebEngine {
public:
  explicit Engine(WebModuleHost& host);

  std::unique_ptr<WebPage> makePage(UIView& view, WebPageClient& client,
                                    const WKWebViewConfiguration& configuration,
                                    WebPage* opener) override;
  void fetchDataRecords(std::function<void(std::vector<WKWebsiteDataRecord>)> done) override;
  void removeData(std::vector<WKWebsiteDataRecord> records, std::function<void()> done) override;

  WebModuleHost& host() { return host_; }
  WebKitNetworkSession* session() { return session_.get(); }
  WebKitWebContext* context() { return context_.get(); }

private:
  WebKitWebsiteDataManager* data();

  WebModuleHost& host_;
  ObjectPointer<WebKitWebContext> context_; ///< our own, for the host may have pages of its own
  ObjectPointer<WebKitNetworkSession> session_;
};

} // namespace zuvi
