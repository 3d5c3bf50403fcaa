#include "tests/WebKit/WebFixtureGtk.h"

#include "sandbox/core/tls/ServerCredentials.h"
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

  bool loads(const sandbox::TlsCredentials& identity, const std::string& host = "localhost") {
    LoopbackServer https([](const Request&) { return Reply{.body = "secret"}; }, identity);
    const auto view = makeWebView();
    listener->lines.clear();
    listener->errors.clear();
    load(*view, https.url("/", host));
    EXPECT_TRUE(waitFor([&] { return listener->has("finish") || !listener->errors.empty(); }));
    runFor(0.2);
    EXPECT_EQ(listener->count("finish") + listener->count("provisional failure"), 1);
    const bool finished = listener->errors.empty();
    EXPECT_TRUE(finished || listener->errors[0].code == NSURLErrorServerCertificateUntrusted);
    EXPECT_EQ(https.requests().empty(), !finished);
    view->removeFromSuperview();
    return finished;
  }

  /// For localhost and 127.0.0.1, of the authority with that name.
  sandbox::TlsCredentials issue(const std::string& authority) const {
    return *sandbox::serverCredentials(folder_.path(authority));
  }
  void trust(const std::string& authority) const {
    URLSession::setAdditionalAuthorities(folder_.path(authority + "/ca.pem"));
  }

  TemporaryFolder folder_;
};

TEST_F(TrustTest, TrustsAFurtherAuthorityOnlyWhenTheProgramAddedIt) {
  const auto good = issue("known");
  issue("other");
  EXPECT_FALSE(loads(good));
  trust("other");
  EXPECT_FALSE(loads(good));
  trust("known");
  EXPECT_FALSE(loads(good, "other.localhost"));
  EXPECT_TRUE(loads(good));
}

} // namespace

} // namespace zuvi::test
