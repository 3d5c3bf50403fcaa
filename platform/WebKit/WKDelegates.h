#pragma once

#include <ZuviSDK/Foundation/Error.h>
#include <ZuviSDK/Foundation/URL.h>

#include <memory>
#include <optional>

namespace zuvi {

class WKWebView;
struct WKWebViewConfiguration;

/// Why a page wants to go somewhere. A link is a link also when a script clicks it.
enum class WKNavigationType { LinkActivated, FormSubmitted, BackForward, Reload, Other };

/// Where a page wants to go.
struct WKNavigationAction {
  WKNavigationType navigationType = WKNavigationType::Other; ///< why it wants to go
  std::optional<URL> url;                                    ///< absent when it is no address
  bool hasTargetFrame = true;                                ///< false: it asks for a new window
  bool byPerson = false; ///< a person's tap or key led to it, not a script alone
};

/// Whether the page may go there.
enum class WKNavigationActionPolicy { Cancel, Allow };

/// Decides where a page may go and hears how it fared. Main queue.
class WKNavigationDelegate {
public:
  virtual ~WKNavigationDelegate() = default;
  /// Asked before each load, redirect and new window; allows all unless an override says else.
  /// Files and the settings of this machine are refused without a question.
  virtual WKNavigationActionPolicy decidePolicy(WKWebView&, const WKNavigationAction&) {
    return WKNavigationActionPolicy::Allow;
  }
  /// The page's own first bytes are there; the page before it is gone.
  virtual void didCommit(WKWebView&) {}
  /// The page and what belongs to it have been loaded.
  virtual void didFinish(WKWebView&) {}
  /// After the page had begun to show.
  virtual void didFail(WKWebView&, const Error&) {}
  /// Before anything of the page was there. A load that gave way to another is
  /// `NSURLErrorCancelled` of `NSURLErrorDomain`.
  virtual void didFailProvisionalNavigation(WKWebView&, const Error&) {}
  /// The process that ran the page is gone; nothing of the page is left but its address.
  virtual void webContentProcessDidTerminate(WKWebView&) {}
  /// The page has answered nothing for seconds, not even a key, or answers again.
  virtual void didChangeResponsiveness(WKWebView&, bool /*responds*/) {}
};

/// What a page asks of the screen around it. Main queue.
class WKUIDelegate {
public:
  virtual ~WKUIDelegate() = default;
  /// A view for the window that the page opens, made with that configuration; null: none is opened.
  virtual std::shared_ptr<WKWebView> createWebView(WKWebView&, const WKWebViewConfiguration&,
                                                   const WKNavigationAction&) {
    return nullptr;
  }
  /// A page that was opened by another has closed itself.
  virtual void webViewDidClose(WKWebView&) {}
  /// A page has asked a person to choose files, which no page is ever given.
  virtual void didRefuseFiles(WKWebView&) {}
};

} // namespace zuvi
