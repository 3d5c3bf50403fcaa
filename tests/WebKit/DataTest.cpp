#include "tests/WebKit/WebFixtureGtk.h"

#include "tests/support/Certificates.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>

namespace zuvi::test {

namespace {

class DataTest : public WebTest {
protected:
  std::vector<std::string> names() {
    std::optional<std::vector<std::string>> found;
    WKWebsiteDataStore::defaultStore().fetchDataRecords([&](const auto& records) {
      found.emplace();
      for (const auto& record : records)
        found->push_back(record.displayName);
    });
    EXPECT_TRUE(waitFor([&] { return found.has_value(); }));
    std::sort(found->begin(), found->end());
    return *found;
  }
  void remove(const std::string& name) {
    bool removed = false;
    WKWebsiteDataStore::defaultStore().removeData({{name}}, [&] { removed = true; });
    EXPECT_TRUE(waitFor([&] { return removed; }));
  }
};

TEST_F(DataTest, RemovesWhatASiteLeftByItsName) {
  serve("/", "<script>document.cookie = 'seen=yes; max-age=1000'; localStorage.a = 1</script>");
  const auto view = makeWebView();
  ASSERT_TRUE(show(*view, "/"));
  load(*view, http.url("/", "127.0.0.1"));
  ASSERT_TRUE(waitFor([&] { return listener->count("finish") == 2; }));
  EXPECT_TRUE(waitFor([&] {
    return names() == std::vector<std::string>{"127.0.0.1", "localhost"};
  }));
  remove("nobody.example");
  EXPECT_EQ(names().size(), 2U);
  remove("localhost");
  EXPECT_EQ(names(), std::vector<std::string>{"127.0.0.1"});
  serve("/", "<p>later");
  ASSERT_TRUE(show(*view, "/"));
  EXPECT_EQ(evaluate(*view, "document.cookie + (localStorage.a || '')"), Value(""));
}

class TrustTest : public WebTest {
protected:
  ~TrustTest() override { URLSession::setAdditionalAuthorities(""); }

  bool loads(const Identity& identity) {
    LoopbackServer https([](const Request&) { return Reply{.body = "secret"}; }, identity);
    const auto view = makeWebView();
    listener->lines.clear();
    load(*view, server(https, "/"));
    EXPECT_TRUE(waitFor([&] { return listener->has("finish") || !listener->errors.empty(); }));
    runFor(0.2);
    EXPECT_EQ(listener->count("finish") + listener->count("provisional failure"), 1);
    const bool finished = listener->has("finish");
    if (!finished)
      EXPECT_EQ(listener->errors.back().code, NSURLErrorServerCertificateUntrusted);
    else
      EXPECT_EQ(evaluate(*view, "document.body.innerText"), Value("secret"));
    EXPECT_EQ(https.requests().empty(), !finished);
    listener->errors.clear();
    view->removeFromSuperview();
    return finished;
  }

  Authority authority_;
  TemporaryFolder folder_;
};

TEST_F(TrustTest, TrustsAFurtherAuthorityOnlyWhenTheProgramAddedIt) {
  EXPECT_FALSE(loads(authority_.good()));
  URLSession::setAdditionalAuthorities(folder_.write("other.pem", Authority().certificate()));
  EXPECT_FALSE(loads(authority_.good()));
  URLSession::setAdditionalAuthorities(
      folder_.write("ca.pem", Authority().certificate() + authority_.certificate()));
  EXPECT_FALSE(loads(authority_.forAnotherHost()));
  EXPECT_FALSE(loads(authority_.expired()));
  EXPECT_TRUE(loads(authority_.good()));
  EXPECT_FALSE(loads(authority_.expired()));
}

} // namespace

} // namespace zuvi::test
