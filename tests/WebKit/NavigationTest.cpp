#include "testing/WebKit/WebFixtureGtk.h"

namespace zuvi::test {

namespace {

class NavigationTest : public WebTest {
protected:
  NavigationTest() {
    serve("/", R"(<a id=here href="/next">next</a> <a id=new href="/other" target=_blank>new</a>
                  <form id=form action="/next"></form>)");
    serve("/next", "next");
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

TEST_F(NavigationTest, RefusesWhatAPageMayNotHave) {
  const auto view = makeWebView();
  ASSERT_TRUE(show(*view, "/"));
  // Not asked at all in some builds of the engine
  evaluate(*view, R"(
    window.place = window.notice = 'denied';
    navigator.geolocation?.getCurrentPosition(() => place = 'given', () => {});
    Notification?.requestPermission().then(answer => notice = answer);
    location.href = 'file:///etc/hostname')");
  runFor(0.5);
  EXPECT_EQ(evaluate(*view, "place"), Value("denied"));
  EXPECT_NE(evaluate(*view, "notice"), Value("granted"));
  EXPECT_EQ(evaluate(*view, "typeof navigator.mediaDevices?.getUserMedia"), Value("undefined"));
  EXPECT_EQ(evaluate(*view, "confirm('really?')"), Value(false));
  EXPECT_EQ(view->url()->path(), "/");
}

} // namespace

} // namespace zuvi::test
