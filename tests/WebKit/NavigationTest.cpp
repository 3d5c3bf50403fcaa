#include "tests/WebKit/WebFixtureGtk.h"

namespace zuvi::test {

namespace {

class NavigationTest : public WebTest {
protected:
  NavigationTest() {
    serve("/", R"(<a id=here href="/next">next</a> <a id=new href="/other" target=_blank>new</a>
                  <form id=form action="/next"></form>)");
    serve("/next", "next");
    serve("/other", "<script>window.webkit.messageHandlers.host.postMessage(window.early + ' ' + "
                    "navigator.userAgent)</script>");
    configuration.userContentController->addUserScript({"window.early = 'early'"});
  }

  std::shared_ptr<WKWebView> open(WKWebView& opener, const WKWebViewConfiguration& like) {
    auto made = make<WKWebView>(opener.frame(), like);
    made->uiDelegate = listener;
    made->setCustomUserAgent("Widget/2");
    opener.addSubview(made);
    return made;
  }
};

TEST_F(NavigationTest, TellsLinksFromEverythingElse) {
  const auto view = makeWebView();
  ASSERT_TRUE(show(*view, "/"));
  listener->linkPolicy = WKNavigationActionPolicy::Cancel;
  evaluate(*view, "document.getElementById('here').click()");
  ASSERT_TRUE(waitFor([&] { return listener->has("link to /next"); }));
  evaluate(*view, "document.getElementById('new').click()");
  ASSERT_TRUE(waitFor([&] { return listener->has("link to /other in a new window"); }));
  runFor(0.2);
  EXPECT_EQ(requestsFor("/next") + requestsFor("/other"), 0);
  EXPECT_TRUE(listener->errors.empty()); // what was not allowed has not failed
  EXPECT_EQ(view->url()->path(), "/");

  evaluate(*view, "document.getElementById('form').submit()");
  EXPECT_TRUE(waitFor([&] { return listener->has("form to /next"); }));
  ASSERT_TRUE(waitFor([&] { return listener->count("finish") == 2; }));
  evaluate(*view, "location.href = '/'");
  EXPECT_TRUE(waitFor([&] { return listener->count("finish") == 3; }));
  EXPECT_EQ(listener->count("other to /"), 2);
  evaluate(*view, "history.back()");
  EXPECT_TRUE(waitFor([&] { return listener->has("back to /next"); }));
}

TEST_F(NavigationTest, OpensAndClosesWindowsThroughItsDelegate) {
  const auto view = makeWebView();
  ASSERT_TRUE(show(*view, "/"));
  EXPECT_EQ(evaluate(*view, "window.open('/other') === null"), Value(true)); // nobody opens it
  EXPECT_TRUE(listener->has("window for /other"));
  // One that nobody holds.
  listener->open = [&](auto&, const auto& like) { return make<WKWebView>(CGRect{}, like); };
  EXPECT_EQ(evaluate(*view, "window.open('/other') === null"), Value(true));

  listener->open = [&](auto& opener, const auto& like) { return open(opener, like); };
  EXPECT_EQ(evaluate(*view, "window.kid = window.open('/other'), kid === null"), Value(false));
  ASSERT_TRUE(waitFor([&] { return !listener->messages.empty(); }));
  EXPECT_EQ(listener->messages[0], Value("early Widget/2"));
  EXPECT_EQ(view->subviews().size(), 1U);
  evaluate(*view, "kid.close()");
  EXPECT_TRUE(waitFor([&] { return listener->has("close"); }));
  view->subviews()[0]->removeFromSuperview();
  EXPECT_EQ(evaluate(*view, "kid.closed"), Value(true));
}

TEST_F(NavigationTest, RefusesWhatAPageMayNotHave) {
  const auto view = makeWebView();
  ASSERT_TRUE(show(*view, "/"));
  evaluate(*view, R"(
    window.found = {};
    navigator.geolocation?.getCurrentPosition(() => found.place = 'given', e => found.place = e.code);
    Notification?.requestPermission().then(answer => found.notice = answer);
    found.media = typeof navigator.mediaDevices?.getUserMedia;
    found.confirm = confirm('really?');
    location.href = 'file:///etc/hostname';
    found)");
  runFor(0.5);
  const Value found = evaluate(*view, "found");
  ASSERT_TRUE(found.dictionary());
  const auto& answers = *found.dictionary();
  EXPECT_TRUE(!answers.contains("place") || answers.at("place") == Value(1));
  EXPECT_TRUE(!answers.contains("notice") || answers.at("notice") != Value("granted"));
  EXPECT_EQ(answers.at("media"), Value("undefined"));
  EXPECT_EQ(answers.at("confirm"), Value(false));
  EXPECT_EQ(view->url()->path(), "/");
}

} // namespace

} // namespace zuvi::test
