#pragma once

#include "platform/UIKit/UIWindow.h"
#include "platform/WebKit/WKWebView.h"
#include "tests/UIKit/Pixels.h"
#include "tests/support/LoopbackServer.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace zuvi::test {

/// Writes down what a web view tells, a line each, and answers what it is asked.
class Listener final : public WKNavigationDelegate,
                       public WKUIDelegate,
                       public WKScriptMessageHandler {
public:
  std::vector<std::string> lines;
  std::vector<Error> errors;
  std::vector<Value> messages;
  WKNavigationActionPolicy linkPolicy = WKNavigationActionPolicy::Allow;
  std::function<std::shared_ptr<WKWebView>(WKWebView&, const WKWebViewConfiguration&)> open;
  std::function<void()> onFinish;

  bool has(const std::string& line) const;
  int count(const std::string& line) const;

  WKNavigationActionPolicy decidePolicy(WKWebView&, const WKNavigationAction& action) override;
  void didFinish(WKWebView&) override {
    lines.emplace_back("finish");
    if (onFinish) onFinish();
  }
  void didFail(WKWebView&, const Error& error) override { add("fail", error); }
  void didFailProvisionalNavigation(WKWebView&, const Error& error) override {
    add("provisional failure", error);
  }
  void webContentProcessDidTerminate(WKWebView&) override { lines.emplace_back("terminated"); }
  std::shared_ptr<WKWebView> createWebView(WKWebView& opener, const WKWebViewConfiguration& like,
                                           const WKNavigationAction& action) override;
  void webViewDidClose(WKWebView&) override { lines.emplace_back("close"); }
  void didReceiveScriptMessage(const WKScriptMessage& message) override;

private:
  void add(const std::string& line, const Error& error);
};

/// A real window with the screen in it, a web server of the test's own pages, and real time.
class WebTest : public testing::Test {
protected:
  static constexpr int width = 360, height = 640;

  WebTest();
  ~WebTest() override;

  /// Runs the event loop until something holds; false when it takes too long.
  static bool waitFor(const std::function<bool()>& holds, double seconds = 20);
  static void runFor(double seconds);

  void serve(const std::string& path, const std::string& html,
             const std::string& type = "text/html");
  static std::string server(const LoopbackServer& from, const std::string& path) {
    return from.url(path, "localhost");
  }
  int requestsFor(const std::string& path) const;

  /// A view over the whole window that tells the listener.
  std::shared_ptr<WKWebView> makeWebView();
  void load(WKWebView& view, const std::string& address);
  /// Loads a page of the server and waits until it has finished.
  bool show(WKWebView& view, const std::string& path);
  /// The result of a script, or the error's description in the dictionary's "error".
  static Value evaluate(WKWebView& view, const std::string& script);

  /// The window as it was drawn last.
  Pixels screen() const;
  /// With the real pointer and keyboard, at a point of the window.
  void click(double x, double y);
  void type(const std::string& keys);
  /// Gives the keyboard to a window, as a window manager does.
  void activate(GtkWidget* other);

  std::shared_ptr<Listener> listener = std::make_shared<Listener>();
  WKWebViewConfiguration configuration;
  GtkWidget* top = nullptr;
  std::shared_ptr<UIWindow> window;
  LoopbackServer http{[this](const Request& request) { return reply(request); }};

private:
  Reply reply(const Request& request);
  void drive(const std::vector<std::string>& words);

  std::mutex mutex_;
  std::map<std::string, Reply> pages_;
};

} // namespace zuvi::test
