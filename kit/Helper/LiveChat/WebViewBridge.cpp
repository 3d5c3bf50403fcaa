#include "kit/Helper/LiveChat/WebViewBridge.h"

#include <ZuviSDK/Foundation/Print.h>
#include <ZuviSDK/LiveChatMessage.h>
#include "platform/WebKit/WKWebView.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <utility>

namespace zuvi {

namespace {

/// A text is in seconds, a number in milliseconds.
std::optional<Date> dateFromTimestamp(const Value* timestamp) {
  if (!timestamp) return std::nullopt;
  if (const auto number = timestamp->number()) return Date{*number / 1000.0};
  const std::string* text = timestamp->string();
  if (!text) return std::nullopt;
  double seconds = 0;
  const char* end = text->data() + text->size();
  const auto [stopped, problem] = std::from_chars(text->data(), end, seconds);
  if (problem != std::errc() || stopped != end || !std::isfinite(seconds)) return std::nullopt;
  return Date{seconds};
}

void printInvalid(const char* key) {
  print("'" + std::string(key) + "' key not valid in 'newMessage'");
}

} // namespace

WebViewBridge::WebViewBridge() : webAppActive_(false, [this] { flush(); }) {}

void WebViewBridge::handle(const Value::Dictionary& message) {
  const auto type = stringValue(message, "messageType");
  if (!type) return;
  webAppActive_ = true;
  if (*type == "newMessage") {
    handleNewMessage(message);
  } else if (*type == "hideChatWindow") {
    if (const auto to = delegate.lock()) to->hideChatWindow();
  } else if (*type != "ready") { // from our own script; only says that the page runs
    print("WebViewBridge unknown messageType: " + Value(message).description());
  }
}

void WebViewBridge::handleNewMessage(const Value::Dictionary& message) {
  const auto text = stringValue(message, "text");
  if (!text) return printInvalid("text");
  const auto id = stringValue(message, "id");
  if (!id) return printInvalid("id");
  const auto date = dateFromTimestamp(valueForKey(message, "timestamp"));
  if (!date) return printInvalid("timestamp");
  const Value* author = valueForKey(message, "author");
  if (!author || !author->dictionary()) return printInvalid("author");
  const auto name = stringValue(*author->dictionary(), "name");
  if (!name) return printInvalid("author.name");
  if (const auto to = delegate.lock()) to->received({*id, *text, *date, *name, message});
}

void WebViewBridge::postFocusEvent() {
  post("LiveChatWidget_emitFocus();");
}

void WebViewBridge::postBlurEvent() {
  post("LiveChatWidget_emitBlur();");
}

void WebViewBridge::post(const std::string& script) {
  if (!webAppActive_) {
    delayedMessages_.push_back(script);
    return;
  }
  const auto page = webView.lock();
  if (!page) return;
  page->evaluateJavaScript(script, [script](const auto&, const std::optional<Error>& error) {
    if (error)
      print("Sending message to iOS web bridge error: '" + error->description + "' message: '" +
            script + "'");
  });
}

void WebViewBridge::flush() {
  if (!webAppActive_) return;
  for (const std::string& script : std::exchange(delayedMessages_, {}))
    post(script);
}

} // namespace zuvi
