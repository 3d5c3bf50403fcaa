#pragma once

#include "platform/WebKitGtk/EngineGtk.h"

#include <map>

namespace zuvi {

/// One page and its widget. What it tells its client may end its life, so nothing of it is touched
/// afterwards.
class Page final : public WebPage {
public:
  Page(Engine& engine, UIView& view, WebPageClient& client,
       const WKWebViewConfiguration& configuration, Page* opener);
  ~Page() override;

  void load(const URLRequest& request) override;
  void reload() override;
  void evaluate(const std::string& script,
                std::function<void(std::optional<Value>, std::optional<Error>)> done) override;
  void setCustomUserAgent(const std::string& userAgent) override;
  void setOpaque(bool opaque) override;
  void setFocused(bool focused) override { place_->setFocused(focused); }
  void setCoveredBottom(double height) override { place_->setCoveredBottom(height); }
  std::optional<URL> url() const override;
  std::string title() const override;
  std::shared_ptr<const UIImage> picture(CGSize size, double scale) override;

private:
  WKNavigationAction actionOf(WebKitNavigationAction* action) const;
  bool isByPerson(WebKitNavigationAction* action) const;
  void watchPerson();
  void fillContents(const WKUserContentController& controller);
  void loadAgain(const char* address);
  void fail(WebKitLoadEvent when, const Error& error);

  static gboolean onPolicy(WebKitWebView*, WebKitPolicyDecision*, WebKitPolicyDecisionType, Page*);
  static void onLoad(WebKitWebView*, WebKitLoadEvent, Page*);
  static gboolean onFailure(WebKitWebView*, WebKitLoadEvent, const char*, GError*, Page*);
  static gboolean onUntrusted(WebKitWebView*, const char*, GTlsCertificate*, GTlsCertificateFlags,
                              Page*);
  static void onResponsiveness(WebKitWebView*, GParamSpec*, Page*);
  static gboolean onFiles(WebKitWebView*, WebKitFileChooserRequest*, Page*);
  static gboolean onInput(GtkEventController*, GdkEvent*, Page*);
  static void onTermination(WebKitWebView*, WebKitWebProcessTerminationReason, Page*);
  static GtkWidget* onCreate(WebKitWebView*, WebKitNavigationAction*, Page*);
  static void onClose(WebKitWebView*, Page*);
  static void onMessage(WebKitUserContentManager*, JSCValue*, Page*);

  Engine& engine_;
  WebPageClient& client_;
  ObjectPointer<WebKitUserContentManager> contents_;
  WebKitWebView* page_;
  std::unique_ptr<ForeignWidget> place_; ///< holds `page_`
  GtkEventController* input_ = nullptr;  ///< of `page_`
  ObjectPointer<GCancellable> scripts_;  ///< those that have not answered yet
  ObjectPointer<WebKitURIRequest> request_;
  std::string address_;  ///< where the last load led
  int attempts_ = 0;     ///< of the load under way that had to be begun anew
  bool failed_ = false;  ///< since the load began
  bool begun_ = false;   ///< whether any page was ever there
  bool dead_ = false;    ///< its process is gone, and no load has begun since
  bool secure_ = false;  ///< it began over https and stays there
  gint64 touchedAt_ = 0; ///< when a person last did something there; monotonic
  /// When a script of ours last began or ended; scripts hold it, as they may outlive the page.
  std::shared_ptr<gint64> scriptedAt_ = std::make_shared<gint64>(0);
  std::map<std::string, std::string> handlers_; ///< names of the program's by those in the page
};

} // namespace zuvi
