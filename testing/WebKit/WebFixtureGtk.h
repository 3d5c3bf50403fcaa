#pragma once

#include <ZuviSDK/UIKit/ScreenWidget.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/UIKit/ScreenPicture.h"
#include "platform/UIKit/UIScreen.h"
#include "platform/WebKit/WKWebView.h"
#include "testing/UIKit/Pixels.h"
#include "testing/backend/LoopbackServer.h"
#include "testing/support/EngineAsRoot.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <algorithm>

// Declared here, as its header brings macros such as None.
extern "C" unsigned long gdk_x11_surface_get_xid(GdkSurface* surface);

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
  std::function<void()> onFinish;

  bool has(const std::string& line) const { return count(line) > 0; }
  int count(const std::string& line) const {
    return int(std::count(lines.begin(), lines.end(), line));
  }

  WKNavigationActionPolicy decidePolicy(WKWebView&, const WKNavigationAction& action) override {
    const char* types[] = {"link", "form", "back", "reload", "other"};
    lines.push_back(std::string(types[int(action.navigationType)]) + " to " + pathOf(action) +
                    (action.hasTargetFrame ? "" : " in a new window") +
                    (action.byPerson ? " by a person" : ""));
    return action.navigationType == WKNavigationType::LinkActivated
               ? linkPolicy
               : WKNavigationActionPolicy::Allow;
  }
  void didFinish(WKWebView&) override {
    lines.emplace_back("finish");
    if (onFinish) onFinish();
  }
  void didFail(WKWebView&, const Error& error) override {
    lines.emplace_back("fail");
    errors.push_back(error);
  }
  void didFailProvisionalNavigation(WKWebView&, const Error& error) override {
    lines.emplace_back("provisional failure");
    errors.push_back(error);
  }
  void didRefuseFiles(WKWebView&) override { lines.emplace_back("no files"); }
  void didChangeResponsiveness(WKWebView&, bool responds) override {
    lines.emplace_back(responds ? "responds" : "hangs");
  }
  void didReceiveScriptMessage(const WKScriptMessage& message) override {
    messages.push_back(message.body);
  }

private:
  static std::string pathOf(const WKNavigationAction& action) {
    return action.url ? action.url->path() : "nowhere";
  }
};

/// A real window with the screen in it, a web server of the test's own pages, and real time.
class WebTest : public testing::Test {
protected:
  static constexpr int width = 360, height = 640;

  WebTest() {
    gtk_init();
    top = gtk_window_new();
    gtk_window_set_decorated(GTK_WINDOW(top), FALSE);
    gtk_window_set_default_size(GTK_WINDOW(top), width, height);
    gtk_window_set_child(GTK_WINDOW(top), screenWidgetNew());
    gtk_window_present(GTK_WINDOW(top));
    window = make<UIWindow>();
    window->makeKeyAndVisible();
    configuration.userContentController->addScriptMessageHandler(listener, "host");
    EXPECT_TRUE(waitFor([] { return UIScreen::main().bounds().width == width; }));
  }
  ~WebTest() override {
    const std::vector<std::weak_ptr<UIView>> views(window->subviews().begin(),
                                                   window->subviews().end());
    window->setVisible(false);
    window = nullptr;
    for (const auto& view : views)
      EXPECT_TRUE(view.expired()) << "a view has outlived the test";
    gtk_window_destroy(GTK_WINDOW(top));
    runFor(0.05);
    WebEngine::install(nullptr);
  }

  /// Runs the event loop until something holds; false when it takes too long.
  static bool waitFor(const std::function<bool()>& holds, double seconds = 20) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    const guint tick = g_timeout_add(
        10, [](gpointer) -> gboolean { return TRUE; }, nullptr);
    while (!holds() && Clock::now() < end)
      g_main_context_iteration(nullptr, TRUE);
    g_source_remove(tick);
    return holds();
  }
  static void runFor(double seconds) {
    waitFor([] { return false; }, seconds);
  }

  void serve(const std::string& path, const std::string& html,
             const std::string& type = "text/html") {
    const std::lock_guard lock(mutex_);
    pages_[path] = {200, {{"Content-Type", type}}, html};
  }
  static std::string server(const LoopbackServer& from, const std::string& path) {
    return from.url(path, "localhost");
  }
  int requestsFor(const std::string& path) const {
    const auto all = http.requests();
    return int(std::count_if(all.begin(), all.end(),
                             [&](const Request& request) { return request.path == path; }));
  }

  /// A view over the whole window that tells the listener.
  std::shared_ptr<WKWebView> makeWebView() {
    auto view = make<WKWebView>(window->bounds(), configuration);
    view->navigationDelegate = listener;
    view->uiDelegate = listener;
    window->addSubview(view);
    return view;
  }
  static void load(WKWebView& view, const std::string& address) {
    view.load(URLRequest(*URL::fromString(address)));
  }
  /// Loads a page of the server and waits until it has finished.
  bool show(WKWebView& view, const std::string& path) {
    const int before = listener->count("finish");
    load(view, server(http, path));
    return waitFor([&] { return listener->count("finish") > before; });
  }
  /// The result of a script, or the error's description in the dictionary's "error".
  static Value evaluate(WKWebView& view, const std::string& script) {
    std::optional<Value> answer;
    view.evaluateJavaScript(script, [&](const auto& value, const auto& error) {
      EXPECT_FALSE(answer) << "a second answer";
      EXPECT_NE(value.has_value(), error.has_value());
      answer = error ? Value(Value::Dictionary{{"error", error->description}}) : *value;
    });
    EXPECT_TRUE(waitFor([&] { return answer.has_value(); })) << script;
    return answer.value_or(Value());
  }
  /// Whether a script comes to give that, within a few seconds.
  static bool becomes(WKWebView& view, const std::string& script, const Value& wanted) {
    return waitFor([&] { return evaluate(view, script) == wanted; }, 5);
  }

  /// The window as it was drawn last.
  static Pixels screen() { return Pixels(pictureOfScreen(), UIScreen::main().scale()); }
  /// With the real pointer and keyboard, at a point of the window.
  void click(double x, double y) {
    activate(top);
    double left = 0, up = 0;
    gtk_native_get_surface_transform(GTK_NATIVE(top), &left, &up);
    drive("mousemove --window " + idOf(top) + ' ' + std::to_string(int(x + left)) + ' ' +
          std::to_string(int(y + up)) + " click 1");
  }
  static void type(const std::string& keys) { drive("key " + keys); }
  /// Gives the keyboard to a window, as a window manager does.
  static void activate(GtkWidget* other) { drive("windowfocus " + idOf(other)); }

  std::shared_ptr<Listener> listener = std::make_shared<Listener>();
  WKWebViewConfiguration configuration;
  GtkWidget* top = nullptr;
  std::shared_ptr<UIWindow> window;
  LoopbackServer http{[this](const Request& request) {
    const std::lock_guard lock(mutex_);
    const auto page = pages_.find(request.path);
    return page == pages_.end() ? Reply{404} : page->second;
  }};

private:
  static void drive(const std::string& command) {
    EXPECT_EQ(std::system(("xdotool " + command).c_str()), 0);
    runFor(0.1);
  }
  static std::string idOf(GtkWidget* of) {
    return std::to_string(gdk_x11_surface_get_xid(gtk_native_get_surface(GTK_NATIVE(of))));
  }

  std::mutex mutex_;
  std::map<std::string, Reply> pages_;
};

} // namespace zuvi::test
