#include "tests/WebKit/WebFixtureGtk.h"

#include "sandbox/core/tls/ServerCredentials.h"
#include "tests/support/ChildProcess.h"
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
  for (const char* below : {g_get_user_data_dir(), g_get_user_cache_dir()}) // this program's alone
    EXPECT_EQ(
        std::filesystem::status(std::string(below) + "/test_WebKit/zuvisdk-chat").permissions(),
        std::filesystem::perms::owner_all)
        << below;
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

  /// Whether a page comes from openssl's server, with a certificate of the test's own authority.
  bool loadsFrom(const std::string& certificate, const std::string& options) {
    static const std::string request = "openssl req -x509 -nodes -days 2 -keyout ";
    const std::string in = folder_.path() + '/';
    const auto run = [](const std::string& command) {
      EXPECT_EQ(std::system((command + " 2>/dev/null").c_str()), 0) << command;
    };
    if (!std::filesystem::exists(in + "ca.pem"))
      run(request + in + "ca-key.pem -out " + in + "ca.pem -newkey rsa:2048 -subj /CN=authority");
    run(request + in + "key.pem -out " + in + "server.pem -CA " + in + "ca.pem -CAkey " + in +
        "ca-key.pem -subj /CN=localhost -addext subjectAltName=DNS:localhost "
        "-addext basicConstraints=critical,CA:FALSE " +
        certificate);
    URLSession::setAdditionalAuthorities(in + "ca.pem");
    std::filesystem::remove(in + "log");
    // What a server of today refuses is allowed at level 0.
    const std::string serve = "exec openssl s_server -accept localhost:0 -www -key " + in +
                              "key.pem -cert " + in + "server.pem -cipher ALL:@SECLEVEL=0 ";
    const ChildProcess server({"sh", "-c", serve + options}, in + "log");
    std::string port;
    EXPECT_TRUE(waitFor([&] {
      const std::string log = TemporaryFolder::read(in + "log");
      const auto at = log.find("ACCEPT 127.0.0.1:");
      if (at != log.npos && log.find('\n', at) != log.npos) port = log.substr(at + 17, 5);
      return !port.empty();
    }));
    const auto view = makeWebView();
    listener->lines.clear();
    load(*view, "https://localhost:" + port.substr(0, port.find('\n')) + '/');
    EXPECT_TRUE(
        waitFor([&] { return listener->has("finish") || listener->has("provisional failure"); }));
    view->removeFromSuperview();
    return listener->has("finish");
  }

  TemporaryFolder folder_;
};

TEST_F(TrustTest, AsksForMoreThanAnAuthority) {
  const std::string rsa = "-newkey rsa:2048 ", purpose = "-addext extendedKeyUsage=";
  const std::tuple<const char*, std::string, std::string, bool> rows[] = {
      {"TLS 1.3", rsa, "", true},
      {"TLS 1.2", rsa + purpose + "serverAuth", "-tls1_2", true},
      {"TLS 1.1", rsa, "-tls1_1", false},
      {"TLS 1.0", rsa, "-tls1", false},
      {"no forward secrecy", rsa, "-tls1_2 -cipher AES256-GCM-SHA384", false},
      {"a weak key", "-newkey rsa:1024", "", false},
      {"a client's certificate", rsa + purpose + "clientAuth", "", false}};
  for (const auto& [what, certificate, server, wanted] : rows)
    EXPECT_EQ(loadsFrom(certificate, server), wanted) << what;
}

TEST_F(TrustTest, StaysSecureOnceItWas) {
  serve("/", "plain");
  const auto identity = issue("known");
  trust("known");
  LoopbackServer https(
      [this](const Request& request) {
        if (request.path == "/") return Reply{302, {{"Location", server(http, "/")}}, ""};
        return Reply{200,
                     {{"Content-Type", "text/html"}},
                     "<iframe src='" + server(http, "/") + "'></iframe>"};
      },
      identity);
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
