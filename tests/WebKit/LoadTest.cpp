#include "testing/WebKit/WebFixtureGtk.h"

namespace zuvi::test {

namespace {

using LoadTest = WebTest;

TEST_F(LoadTest, KeepsItsOrderWhileTheEngineIsLoaded) {
  serve("/", "<title>Hello</title>");
  std::vector<std::string> told;
  const auto note = [&told](const auto& value, const auto& error) {
    told.push_back(value ? value->description() : error ? "failed" : "");
  };
  int lists = 0;
  WKWebsiteDataStore::defaultStore().fetchDataRecords([&](const auto&) { lists++; });
  const auto view = makeWebView();
  {
    const auto gone = makeWebView();
    gone->evaluateJavaScript("0", note);
    load(*gone, server(http, "/gone"));
    gone->removeFromSuperview();
  }
  for (const char* script : {"window.kept = 1", "window.kept + 1"})
    view->evaluateJavaScript(script, note);
  load(*view, server(http, "/"));
  EXPECT_TRUE(listener->lines.empty());
  EXPECT_TRUE(waitFor([&] { return listener->has("finish") && told.size() == 3 && lists == 1; }));
  EXPECT_EQ(told, (std::vector<std::string>{"failed", "1", "2"}));
  EXPECT_EQ(requestsFor("/gone"), 0);
  EXPECT_EQ(view->url()->path(), "/");
}

TEST_F(LoadTest, LoadsAPageWithTheHeadersAndNameItIsGiven) {
  serve("/", "<title>Hello</title>");
  configuration.userContentController->addUserScript({"window.early = document.body === null"});
  const auto view = makeWebView();
  view->reload(); // there is nothing yet
  EXPECT_FALSE(view->url());
  const std::string usual = *evaluate(*view, "navigator.userAgent").string();
  EXPECT_FALSE(view->url());
  view->setCustomUserAgent(usual + " Widget/1");
  URLRequest request(*URL::fromString(server(http, "/")));
  request.allHTTPHeaderFields["X-Widget"] = "yes";
  view->load(request);
  ASSERT_TRUE(waitFor([&] { return listener->has("finish"); }));
  EXPECT_EQ(listener->lines, (std::vector<std::string>{"other to /", "finish"}));
  EXPECT_TRUE(waitFor([&] { return view->title() == "Hello"; }));
  EXPECT_EQ(view->url()->absoluteString(), server(http, "/"));
  EXPECT_EQ(evaluate(*view, "window.early"), Value(true));
  const auto sent = http.requests().front().headers;
  EXPECT_EQ(sent.at("x-widget"), "yes");
  EXPECT_EQ(sent.at("user-agent"), usual + " Widget/1");
  view->reload();
  EXPECT_TRUE(waitFor([&] { return listener->count("finish") == 2; }));
}

TEST_F(LoadTest, TellsAFailureOnceAndRecovers) {
  serve("/", "back");
  serve("/download", "bytes", "application/x-unknown");
  const auto view = makeWebView();
  auto closed = std::make_unique<LoopbackServer>([](const Request&) { return Reply{}; });
  const std::string nobody = server(*closed, "/");
  closed = nullptr;
  const std::tuple<std::string, std::string, int> rows[] = {
      {"http://no-such-host.invalid/", NSURLErrorDomain, NSURLErrorCannotFindHost},
      {nobody, NSURLErrorDomain, NSURLErrorCannotConnectToHost},
      {"", NSURLErrorDomain, NSURLErrorCannotConnectToHost}, // once more what was never there
      {server(http, "/download"), "WebKitErrorDomain", 102},
      {"file:///etc/hostname", NSURLErrorDomain, NSURLErrorUnsupportedURL}};
  for (const auto& [address, domain, code] : rows) {
    const auto before = listener->errors.size();
    address.empty() ? view->reload() : load(*view, address);
    ASSERT_TRUE(waitFor([&] { return listener->errors.size() > before; })) << address;
    EXPECT_EQ(listener->errors.back().domain, domain) << address;
    EXPECT_EQ(listener->errors.back().code, code) << address;
  }
  runFor(0.3);
  EXPECT_EQ(listener->count("provisional failure"), 5);
  EXPECT_FALSE(listener->has("finish"));
  EXPECT_TRUE(show(*view, "/"));
  EXPECT_EQ(evaluate(*view, "document.body.innerText"), Value("back"));
}

TEST_F(LoadTest, TellsACancelledLoadFromOneThatBreaksOff) {
  LoopbackServer silent([](const Request&) { return Reply{.mode = Reply::Mode::NeverAnswer}; });
  LoopbackServer cut([](const Request&) {
    return Reply{.headers = {{"Content-Type", "text/html"}},
                 .body = "<p>" + std::string(200000, 'x'),
                 .mode = Reply::Mode::CutBody};
  });
  serve("/", "here");
  const auto view = makeWebView();
  load(*view, server(silent, "/"));
  ASSERT_TRUE(waitFor([&] { return !silent.requests().empty(); }));
  ASSERT_TRUE(show(*view, "/"));
  ASSERT_EQ(listener->errors.size(), 1U);
  EXPECT_EQ(listener->errors[0].domain, NSURLErrorDomain);
  EXPECT_EQ(listener->errors[0].code, NSURLErrorCancelled);
  listener->lines.clear();
  load(*view, server(cut, "/"));
  ASSERT_TRUE(waitFor([&] { return listener->errors.size() == 2; }));
  runFor(0.2);
  EXPECT_EQ(listener->lines, (std::vector<std::string>{"other to /", "fail"}));
}

TEST_F(LoadTest, EndsWithItsView) {
  serve("/", "here");
  auto view = makeWebView();
  const std::weak_ptr<WKWebView> dropped = view;
  listener->onFinish = [&] { // while the page tells
    view->removeFromSuperview();
    view = nullptr;
  };
  load(*view, server(http, "/"));
  EXPECT_TRUE(waitFor([&] { return dropped.expired(); }));
}

} // namespace

} // namespace zuvi::test
