#include "platform/WebKit/MachineEngine.h"
#include "testing/WebKit/WebFixtureGtk.h"

namespace zuvi::test {

namespace {

class NoEngineTest : public WebTest {
protected:
  /// What a program sees that can't show pages.
  static void expectFailures() {
    EXPECT_FALSE(WKWebView::isAvailable());
    const auto listener = std::make_shared<Listener>();
    const auto view = make<WKWebView>(CGRect{0, 0, 10, 10}, WKWebViewConfiguration{});
    view->navigationDelegate = listener;
    int answers = 0;
    view->load(URLRequest(*URL::fromString("https://example.com/")));
    view->reload();
    view->setOpaque(false);
    view->setCustomUserAgent("x");
    view->evaluateJavaScript(
        "1", [&](const auto& value, const auto& error) { answers += !value && error; });
    WKWebsiteDataStore::defaultStore().fetchDataRecords(
        [&](const auto& records) { answers += records.empty(); });
    WKWebsiteDataStore::defaultStore().removeData({{"a"}}, [&] { answers++; });
    EXPECT_TRUE(listener->lines.empty()) << "told before the call was over";
    runFor(0.1);
    EXPECT_EQ(listener->lines, std::vector<std::string>{"provisional failure"});
    EXPECT_EQ(answers, 3);
    EXPECT_FALSE(view->drawHierarchy({10, 10}));
    EXPECT_FALSE(view->url());
  }
};

TEST_F(NoEngineTest, FailsWithoutItsModule) {
  WebEngine::install(makeMachineEngine(""));
  expectFailures();
  const auto broken = makeMachineEngine("/dev/null");
  WebEngine::install(broken);
  EXPECT_TRUE(WKWebView::isAvailable()); // nothing was loaded yet
  const auto view = makeWebView();
  int failures = 0;
  const auto note = [&](const auto&, const auto& error) { failures += error.has_value(); };
  view->evaluateJavaScript("1", note);
  load(*view, server(http, "/"));
  EXPECT_TRUE(waitFor([&] { return !WKWebView::isAvailable() && failures == 1; }));
  EXPECT_EQ(listener->lines, std::vector<std::string>{"provisional failure"});
  view->removeFromSuperview();
  expectFailures();
}

} // namespace

} // namespace zuvi::test
