#include "testing/WebKit/WebFixtureGtk.h"

#include "sandbox/core/tls/ServerCredentials.h"
#include "testing/backend/BadServer.h"
#include "testing/support/TemporaryFolder.h"

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
  for (const char* below : {g_get_user_data_dir(), g_get_user_cache_dir()}) // this program's alone
    EXPECT_EQ(
        std::filesystem::status(std::string(below) + "/test_WebKit/zuvisdk-chat").permissions(),
        std::filesystem::perms::owner_all)
        << below;
}

class TrustTest : public WebTest {
protected:
  ~TrustTest() override { URLSession::setAdditionalAuthorities(""); }

  bool loads(const std::string& address) {
    const auto view = makeWebView();
    listener->lines.clear();
    load(*view, address);
    EXPECT_TRUE(
        waitFor([&] { return listener->has("finish") || listener->has("provisional failure"); }));
    view->removeFromSuperview();
    return listener->has("finish");
  }

  /// For localhost and 127.0.0.1, of the authority with that name.
  sandbox::TlsCredentials issue(const std::string& authority) const {
    return *sandbox::serverCredentials(folder_.path(authority));
  }
  void trust(const std::string& authority) const {
    URLSession::setAdditionalAuthorities(folder_.path(authority + "/ca.pem"));
  }

  const TemporaryFolder folder_;
  const sandbox::TlsCredentials good_ = issue("known");
};

TEST_F(TrustTest, AsksForMoreThanAnAuthority) {
  trust("known");
  const std::string old = " -cipher ALL:@SECLEVEL=0"; // allows what a server of today refuses
  const std::pair<std::string, bool> rows[] = {
      {"2048 serverAuth", true},
      {"2048 serverAuth -tls1_2", true},
      {"2048 serverAuth -tls1_1" + old, false},
      {"2048 serverAuth -tls1" + old, false},
      {"2048 serverAuth -tls1_2 -cipher AES256-GCM-SHA384", false},
      {"1024 serverAuth" + old, false},
      {"2048 clientAuth", false}};
  for (const auto& [setup, wanted] : rows)
    EXPECT_EQ(loads(BadServer(folder_, setup).url()), wanted) << setup;
}

TEST_F(TrustTest, StaysSecureOnceItWas) {
  serve("/", "plain");
  trust("known");
  LoopbackServer https(
      [this](const Request& request) {
        if (request.path == "/") return Reply{302, {{"Location", server(http, "/")}}, ""};
        return Reply{200,
                     {{"Content-Type", "text/html"}},
                     "<iframe src='" + server(http, "/") + "'></iframe>"};
      },
      good_);
  const auto view = makeWebView();
  load(*view, https.url("/", "localhost"));
  EXPECT_TRUE(waitFor([&] { return !listener->errors.empty(); }));
  load(*view, https.url("/page", "localhost"));
  EXPECT_TRUE(waitFor([&] { return listener->has("finish"); }));
  evaluate(*view, "location.href = '" + server(http, "/") + "'");
  runFor(0.5);
  EXPECT_EQ(requestsFor("/"), 0);
  EXPECT_TRUE(show(*view, "/")) << "the program itself may turn elsewhere";
}

TEST_F(TrustTest, TrustsAFurtherAuthorityOnlyWhenTheProgramAddedIt) {
  const LoopbackServer https([](const Request&) { return Reply{.body = "secret"}; }, good_);
  const std::string address = https.url("/", "localhost");
  issue("other");
  EXPECT_FALSE(loads(address));
  trust("other");
  EXPECT_FALSE(loads(address));
  trust("known");
  EXPECT_FALSE(loads(https.url("/", "other.localhost")));
  EXPECT_EQ(listener->errors.size(), 3U);
  for (const Error& error : listener->errors)
    EXPECT_EQ(error.code, NSURLErrorServerCertificateUntrusted);
  EXPECT_TRUE(https.requests().empty());
  EXPECT_TRUE(loads(address));
}

} // namespace

} // namespace zuvi::test
