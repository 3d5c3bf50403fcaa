#include "platform/WebKit/WKWebView.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include "platform/UIKit/UIScreen.h"

#include <algorithm>
#include <utility>

namespace zuvi {

namespace {

const Error noEngine{NSURLErrorDomain, NSURLErrorUnknown, "Web pages can't be shown here."};

/// What the engine may be asked for: pages of servers, never of this machine.
std::optional<Error> refusal(const URLRequest& request) {
  const std::string scheme = request.url.scheme();
  if (scheme == "file")
    return Error{NSURLErrorDomain, NSURLErrorUnsupportedURL,
                 "Pages of this machine are not shown."};
  if (request.httpMethod != "GET" || request.httpBody)
    return Error{NSURLErrorDomain, NSURLErrorUnsupportedURL, "A page is loaded with GET."};
  return std::nullopt;
}

} // namespace

WKWebView::WKWebView(const CGRect& frame, const WKWebViewConfiguration& configuration)
    : UIView(frame), configuration_(configuration), scrollView_(make<UIScrollView>()) {
  for (const char* name : {UIKeyboardWillShowNotification, UIKeyboardWillHideNotification})
    keyboard_.push_back(NotificationCenter::defaultCenter().observe(
        name, [this](const Notification& notification) { keyboardMoved(notification); }));
}

WKWebView::~WKWebView() {
  for (const PageWork& work : std::exchange(waiting_, {}))
    work(nullptr);
}

bool WKWebView::isAvailable() {
  return problem().empty();
}

std::string WKWebView::problem() {
  return WebEngine::installed().problem();
}

std::optional<bool> WKWebView::isSandboxed() {
  return WebEngine::installed().isSandboxed();
}

static bool sandboxRequired = false;

bool WKWebView::requiresSandbox() {
  return sandboxRequired;
}

void WKWebView::setRequiresSandbox(bool required) {
  sandboxRequired = required;
}

void WKWebView::prepare() {
  WebEngine::installed().whenReady([] {});
}

void WKWebView::withPage(PageWork work) {
  if (page_ && waiting_.empty()) return work(page_.get());
  waiting_.push_back(std::move(work));
  if (waiting_.size() > 1) return; // the first one has asked for the engine
  WebEngine::installed().whenReady([weak = weak_from_this()] {
    if (const auto self = weak.lock()) static_cast<WKWebView&>(*self).workOff();
  });
}

void WKWebView::workOff() {
  if (!page_) adopt(WebEngine::installed().makePage(*this, *this, configuration_, nullptr));
  while (!waiting_.empty()) {
    const PageWork work = std::move(waiting_.front());
    waiting_.pop_front();
    work(page_.get());
  }
}

void WKWebView::adopt(std::unique_ptr<WebPage> page) {
  page_ = std::move(page);
  if (!page_) return;
  if (!opaque_) page_->setOpaque(false);
  if (!customUserAgent_.empty()) page_->setCustomUserAgent(customUserAgent_);
  leaveRoomForKeyboard();
}

void WKWebView::keyboardMoved(const Notification& notification) {
  const Value* frame = valueForKey(notification.userInfo, UIKeyboardFrameEndUserInfoKey);
  const Value* y = frame && frame->dictionary() ? valueForKey(*frame->dictionary(), "y") : nullptr;
  keyboardTop_ =
      y && notification.name == UIKeyboardWillShowNotification ? y->number() : std::nullopt;
  leaveRoomForKeyboard();
}

void WKWebView::leaveRoomForKeyboard() {
  if (!page_) return;
  const CGRect place = superview() ? superview()->convertToScreen(frame()) : frame();
  const double bottom = place.y + place.height;
  page_->setCoveredBottom(keyboardTop_ ? std::clamp(bottom - *keyboardTop_, 0.0, place.height) : 0);
}

void WKWebView::layoutSubviews() {
  UIView::layoutSubviews();
  leaveRoomForKeyboard();
}

void WKWebView::setOpaque(bool opaque) {
  opaque_ = opaque;
  if (page_) page_->setOpaque(opaque);
}

void WKWebView::setCustomUserAgent(const std::string& userAgent) {
  customUserAgent_ = userAgent;
  if (page_) page_->setCustomUserAgent(userAgent);
}

// What is asked of the page

void WKWebView::load(const URLRequest& request) {
  const auto fail = [weak = weak_from_this()](const Error& error) {
    DispatchQueue::main().async([weak, error] {
      if (const auto self = weak.lock())
        static_cast<WKWebView&>(*self).didFailProvisionalNavigation(error);
    });
  };
  if (const auto error = refusal(request)) return fail(*error);
  withPage([request, fail](WebPage* page) {
    if (page) return page->load(request);
    fail(noEngine);
  });
}

void WKWebView::reload() {
  if (page_) page_->reload();
}

void WKWebView::evaluateJavaScript(const std::string& script, ScriptCompletion completion) {
  if (!completion) completion = [](const auto&, const auto&) {};
  withPage([script, completion = std::move(completion)](WebPage* page) {
    if (page) return page->evaluate(script, completion);
    DispatchQueue::main().async([completion] { completion(std::nullopt, noEngine); });
  });
}

std::optional<URL> WKWebView::url() const {
  return page_ ? page_->url() : std::nullopt;
}

std::string WKWebView::title() const {
  return page_ ? page_->title() : "";
}

std::shared_ptr<const UIImage> WKWebView::drawHierarchy(CGSize size) {
  return page_ ? page_->picture(size, UIScreen::main().scale()) : nullptr;
}

void WKWebView::describe(Value::Dictionary& description) const {
  UIView::describe(description);
  if (const auto address = url()) description["address"] = address->absoluteString();
  if (const std::string text = title(); !text.empty()) description["title"] = text;
}

bool WKWebView::canBecomeFirstResponder() const {
  return page_ != nullptr;
}

void WKWebView::didChangeFirstResponder(bool focused) {
  if (page_) page_->setFocused(focused);
}

// What the page tells. A delegate may let go of the view meanwhile.

WKNavigationActionPolicy WKWebView::decidePolicy(const WKNavigationAction& action) {
  const auto alive = weak_from_this().lock();
  const auto delegate = navigationDelegate.lock();
  return delegate ? delegate->decidePolicy(*this, action) : WKNavigationActionPolicy::Allow;
}

void WKWebView::didCommit() {
  const auto alive = weak_from_this().lock();
  if (const auto delegate = navigationDelegate.lock()) delegate->didCommit(*this);
}

void WKWebView::didFinish() {
  const auto alive = weak_from_this().lock();
  if (const auto delegate = navigationDelegate.lock()) delegate->didFinish(*this);
}

void WKWebView::didFail(const Error& error) {
  const auto alive = weak_from_this().lock();
  if (const auto delegate = navigationDelegate.lock()) delegate->didFail(*this, error);
}

void WKWebView::didFailProvisionalNavigation(const Error& error) {
  const auto alive = weak_from_this().lock();
  if (const auto delegate = navigationDelegate.lock())
    delegate->didFailProvisionalNavigation(*this, error);
}

void WKWebView::processDidTerminate() {
  const auto alive = weak_from_this().lock();
  if (const auto delegate = navigationDelegate.lock())
    delegate->webContentProcessDidTerminate(*this);
}

void WKWebView::didChangeResponsiveness(bool responds) {
  const auto alive = weak_from_this().lock();
  if (const auto delegate = navigationDelegate.lock())
    delegate->didChangeResponsiveness(*this, responds);
}

void WKWebView::didReceiveScriptMessage(const WKScriptMessage& message) {
  const auto alive = weak_from_this().lock();
  const auto& handlers = configuration_.userContentController->handlers();
  const auto found = handlers.find(message.name);
  if (found == handlers.end()) return;
  if (const auto handler = found->second.lock())
    handler->didReceiveScriptMessage({message.name, message.body, this});
}

WebPage* WKWebView::createPage(const WKNavigationAction& action) {
  const auto alive = weak_from_this().lock();
  const auto delegate = uiDelegate.lock();
  std::shared_ptr<WKWebView> view =
      delegate ? delegate->createWebView(*this, configuration_, action) : nullptr;
  if (!view || view->page_ || !page_) return nullptr;
  view->adopt(WebEngine::installed().makePage(*view, *view, view->configuration_, page_.get()));
  WebPage* page = view->page_.get();
  const std::weak_ptr<WKWebView> kept = view;
  view = nullptr;
  return kept.expired() ? nullptr : page; // a view that nobody holds shows nothing
}

void WKWebView::didClose() {
  const auto alive = weak_from_this().lock();
  if (const auto delegate = uiDelegate.lock()) delegate->webViewDidClose(*this);
}

void WKWebView::didRefuseFiles() {
  const auto alive = weak_from_this().lock();
  if (const auto delegate = uiDelegate.lock()) delegate->didRefuseFiles(*this);
}

} // namespace zuvi
