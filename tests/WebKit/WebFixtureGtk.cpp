#include "tests/WebKit/WebFixtureGtk.h"

#include "platform/UIKit/ScreenPicture.h"
#include "platform/UIKit/ScreenWidget.h"
#include "platform/UIKit/UIScreen.h"

#include <gdk/x11/gdkx.h>

#include <algorithm>
#include <chrono>

namespace zuvi::test {

bool Listener::has(const std::string& line) const {
  return count(line) > 0;
}

int Listener::count(const std::string& line) const {
  return int(std::count(lines.begin(), lines.end(), line));
}

void Listener::add(const std::string& line, const Error& error) {
  lines.push_back(line);
  errors.push_back(error);
}

WKNavigationActionPolicy Listener::decidePolicy(WKWebView&, const WKNavigationAction& action) {
  const char* types[] = {"link", "form", "back", "reload", "other"};
  lines.push_back(std::string(types[int(action.navigationType)]) + " to " +
                  (action.url ? action.url->path() : "nowhere") +
                  (action.hasTargetFrame ? "" : " in a new window"));
  return action.navigationType == WKNavigationType::LinkActivated ? linkPolicy
                                                                  : WKNavigationActionPolicy::Allow;
}

std::shared_ptr<WKWebView> Listener::createWebView(WKWebView& opener,
                                                   const WKWebViewConfiguration& like,
                                                   const WKNavigationAction& action) {
  lines.push_back(std::string("window for ") + (action.url ? action.url->path() : "nowhere"));
  return open ? open(opener, like) : nullptr;
}

void Listener::didReceiveScriptMessage(const WKScriptMessage& message) {
  lines.push_back("message to " + message.name);
  messages.push_back(message.body);
}

WebTest::WebTest() {
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

WebTest::~WebTest() {
  std::vector<std::weak_ptr<UIView>> views;
  for (const auto& view : window->subviews())
    views.push_back(view);
  window->setVisible(false);
  window = nullptr;
  for (const auto& view : views)
    EXPECT_TRUE(view.expired()) << "a view has outlived the test";
  gtk_window_destroy(GTK_WINDOW(top));
  runFor(0.05);
}

bool WebTest::waitFor(const std::function<bool()>& holds, double seconds) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::duration<double>(seconds);
  const guint tick = g_timeout_add(
      10, [](gpointer) -> gboolean { return TRUE; }, nullptr);
  while (!holds() && Clock::now() < end)
    g_main_context_iteration(nullptr, TRUE);
  g_source_remove(tick);
  return holds();
}

void WebTest::runFor(double seconds) {
  waitFor([] { return false; }, seconds);
}

void WebTest::serve(const std::string& path, const std::string& html, const std::string& type) {
  const std::lock_guard lock(mutex_);
  pages_[path] = {200, {{"Content-Type", type}}, html};
}

Reply WebTest::reply(const Request& request) {
  const std::lock_guard lock(mutex_);
  const auto page = pages_.find(request.path);
  return page == pages_.end() ? Reply{404} : page->second;
}

int WebTest::requestsFor(const std::string& path) const {
  const auto all = http.requests();
  return int(std::count_if(all.begin(), all.end(),
                           [&](const Request& request) { return request.path == path; }));
}

std::shared_ptr<WKWebView> WebTest::makeWebView() {
  auto view = make<WKWebView>(window->bounds(), configuration);
  view->navigationDelegate = listener;
  view->uiDelegate = listener;
  window->addSubview(view);
  return view;
}

void WebTest::load(WKWebView& view, const std::string& address) {
  view.load(URLRequest(*URL::fromString(address)));
}

bool WebTest::show(WKWebView& view, const std::string& path) {
  const int before = listener->count("finish");
  load(view, server(http, path));
  return waitFor([&] { return listener->count("finish") > before; });
}

Value WebTest::evaluate(WKWebView& view, const std::string& script) {
  std::optional<Value> answer;
  view.evaluateJavaScript(script, [&](const auto& value, const auto& error) {
    EXPECT_FALSE(answer) << "a second answer";
    EXPECT_NE(value.has_value(), error.has_value());
    answer = error ? Value(Value::Dictionary{{"error", error->description}}) : *value;
  });
  EXPECT_TRUE(waitFor([&] { return answer.has_value(); })) << script;
  return answer.value_or(Value());
}

Pixels WebTest::screen() const {
  return Pixels(pictureOfScreen(), UIScreen::main().scale());
}

void WebTest::drive(const std::vector<std::string>& words) {
  std::vector<const char*> command{"xdotool"};
  for (const auto& word : words)
    command.push_back(word.c_str());
  command.push_back(nullptr);
  GSubprocess* tool = g_subprocess_newv(command.data(), G_SUBPROCESS_FLAGS_NONE, nullptr);
  ASSERT_TRUE(tool);
  bool done = false;
  g_subprocess_wait_async(
      tool, nullptr,
      [](GObject*, GAsyncResult*, gpointer flag) { *static_cast<bool*>(flag) = true; }, &done);
  EXPECT_TRUE(waitFor([&] { return done; }));
  g_object_unref(tool);
  runFor(0.1);
}

static std::string idOf(GtkWidget* of) {
  return std::to_string(gdk_x11_surface_get_xid(gtk_native_get_surface(GTK_NATIVE(of))));
}

void WebTest::activate(GtkWidget* other) {
  drive({"windowfocus", idOf(other)});
}

void WebTest::click(double x, double y) {
  activate(top);
  double left = 0, up = 0;
  gtk_native_get_surface_transform(GTK_NATIVE(top), &left, &up);
  drive({"mousemove", "--window", idOf(top), std::to_string(int(x + left)),
         std::to_string(int(y + up)), "click", "1"});
}

void WebTest::type(const std::string& keys) {
  drive({"key", keys});
}

} // namespace zuvi::test
