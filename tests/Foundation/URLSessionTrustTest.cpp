#include "sandbox/core/tls/ServerCredentials.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SessionFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <thread>

namespace zuvi {
namespace {

using test::LoopbackServer;
using test::Reply;
using test::Request;

Reply welcome(const Request&) {
  return {200, {}, "welcome"};
}

/// Servers under an authority that the session trusts.
class URLSessionTrustTest : public SessionFixture {
protected:
  URLSessionTrustTest() { URLSession::setAdditionalAuthorities(folder_.path("known/ca.pem")); }
  ~URLSessionTrustTest() override { URLSession::setAdditionalAuthorities(""); }

  URLRequest authorized(const std::string& address) {
    auto request = to(address);
    request.allHTTPHeaderFields = {{"authorization", "Bearer secret"}, {"X-Other", "kept"}};
    return request;
  }

  /// For localhost and 127.0.0.1, of the authority with that name.
  sandbox::TlsCredentials issue(const std::string& authority,
                                std::time_t at = std::time(nullptr)) const {
    return *sandbox::serverCredentials(folder_.path(authority), at);
  }

  const test::TemporaryFolder folder_;
  const sandbox::TlsCredentials good_ = issue("known");
};

TEST_F(URLSessionTrustTest, ABadCertificateSeesNoRequest) {
  constexpr std::time_t years = 2 * 365 * 24 * 3600L;
  const auto expired = issue("old", std::time(nullptr) - years);
  const struct {
    sandbox::TlsCredentials identity;
    std::string host, authority;
  } rows[] = {{good_, "other.localhost", "known"},
              {expired, "localhost", "old"},
              {issue("unknown"), "localhost", "known"}};
  for (const auto& [identity, host, authority] : rows) {
    URLSession::setAdditionalAuthorities(folder_.path(authority + "/ca.pem"));
    const LoopbackServer server(welcome, identity);
    const auto outcome = send(authorized(server.url("/", host)));
    EXPECT_EQ(outcome.code(), NSURLErrorServerCertificateUntrusted) << outcome.text();
    EXPECT_FALSE(outcome.data);
    EXPECT_TRUE(server.requests().empty());
  }
}

TEST_F(URLSessionTrustTest, AnUploadArrivesAfterTheServerClosedTheIdleConnection) {
  const LoopbackServer server(welcome, good_, 1);
  EXPECT_EQ(send(to(server.url("/"))).code(), 0);
  std::this_thread::sleep_for(std::chrono::milliseconds(2200)); // the server's own clock
  auto request = to(server.url("/"));
  request.httpMethod = "POST";
  request.httpBody = HTTPBody{Data(std::string(4 << 20, 'f'))};
  const auto outcome = send(request);
  EXPECT_EQ(outcome.code(), 0) << outcome.text();
}

TEST_F(URLSessionTrustTest, AnAuthorityIsTrustedNoLongerThanItIsNamed) {
  const LoopbackServer server(welcome, good_);
  EXPECT_EQ(send(to(server.url("/"))).code(), 0);
  for (const auto& file : {std::string(), folder_.path("missing"), folder_.write("empty", "")}) {
    URLSession::setAdditionalAuthorities(file);
    EXPECT_EQ(send(to(server.url("/"))).code(), NSURLErrorServerCertificateUntrusted) << file;
  }
  URLSession::setAdditionalAuthorities(folder_.write("junk", "no certificate"));
  EXPECT_NE(send(to(server.url("/"))).code(), 0);
  EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(URLSessionTrustTest, AuthorizationStaysWithItsHost) {
  const LoopbackServer plain(welcome);
  std::string target;
  const auto redirect = [&target](const Request& request) {
    if (request.path == "/end") return welcome(request);
    return Reply{302, {{"Location", target}}, "moved"};
  };
  const LoopbackServer secure(redirect, good_);
  const auto arrivedWith = [](const LoopbackServer& server) {
    const auto headers = server.requests().back().headers;
    EXPECT_EQ(headers.at("x-other"), "kept");
    return headers.count("authorization");
  };

  target = "/end";
  EXPECT_EQ(send(authorized(secure.url("/start"))).data->string(), "welcome");
  EXPECT_EQ(arrivedWith(secure), 1U);

  target = secure.url("/end", "localhost"); // another name
  EXPECT_EQ(send(authorized(secure.url("/start"))).data->string(), "welcome");
  EXPECT_EQ(arrivedWith(secure), 0U);

  target = plain.url("/"); // the same host, unprotected
  EXPECT_EQ(send(authorized(secure.url("/start"))).data->string(), "welcome");
  EXPECT_EQ(arrivedWith(plain), 0U);
}

TEST_F(URLSessionTrustTest, RedirectsEndSomewhere) {
  const LoopbackServer server([](const Request& request) {
    const std::string& path = request.path;
    if (path == "/file") return Reply{302, {{"Location", "file:///etc/passwd"}}, ""};
    if (path == "/nowhere") return Reply{302, {}, "here"};
    const int left = std::stoi(path.substr(1));
    if (left == 0) return Reply{200, {}, request.method};
    return Reply{302, {{"Location", "/" + std::to_string(left - 1)}}, "moved"};
  });
  EXPECT_EQ(send(to(server.url("/10"))).data->string(), "GET");
  EXPECT_EQ(send(to(server.url("/11"))).code(), NSURLErrorHTTPTooManyRedirects);
  EXPECT_EQ(send(to(server.url("/file"))).code(), NSURLErrorUnsupportedURL);
  EXPECT_EQ(send(to(server.url("/nowhere"))).data->string(), "here");
}

TEST_F(URLSessionTrustTest, AnUploadGoesWhereItMayAsTheAnswerSays) {
  const struct {
    const char *method, *path, *where, *arrives;
  } rows[] = {
      {"POST", "/301", "same", "GET"},         {"PUT", "/302", "same", "PUT picture"},
      {"POST", "/303", "same", "GET"},         {"POST", "/307", "same", "POST picture"},
      {"PUT", "/308", "same", "PUT picture"},  {"POST", "/302", "other", "GET"},
      {"POST", "/307", "other", "not at all"}, {"PUT", "/308", "plain", "not at all"},
      {"PUT", "/302", "other", "not at all"},
  };
  const auto show = [](const Request& request) {
    const std::string type = request.headers.contains("content-type") ? " picture" : "";
    EXPECT_EQ(request.body, type.empty() ? "" : "picture");
    return Reply{200, {}, request.method + type};
  };
  const LoopbackServer plain(show);
  std::string target;
  const LoopbackServer server(
      [&](const Request& request) {
        if (request.path == "/end") return show(request);
        return Reply{std::stoi(request.path.substr(1)), {{"Location", target}}, "not at all"};
      },
      good_);
  for (const auto& [method, path, where, arrives] : rows) {
    SCOPED_TRACE(std::string(method) + path + where);
    target = *where == 's'   ? "/end"
             : *where == 'o' ? server.url("/end", "localhost")
                             : plain.url("/end");
    auto upload = to(server.url(path));
    upload.httpMethod = method;
    upload.allHTTPHeaderFields = {{"Content-Type", "image/jpeg"}};
    upload.httpBody = HTTPBody{Data(std::string("pic")), Data(std::string("ture"))};
    EXPECT_EQ(send(upload).data.value_or(Data()).string(), arrives);
  }
}

/// Real servers that were set up badly, all of an authority that is trusted.
TEST_F(URLSessionTrustTest, AWeakConnectionSeesNoRequest) {
  const struct {
    std::string key, purpose;
    std::vector<std::string> options;
    int code;
  } rows[] = {
      {"rsa:2048", "serverAuth", {}, 0},
      {"rsa:2048", "serverAuth", {"-tls1_2", "-cipher", "ECDHE-RSA-AES128-SHA"}, 0},
      {"rsa:2048",
       "serverAuth",
       {"-tls1_1", "-cipher", "ALL:@SECLEVEL=0"},
       NSURLErrorSecureConnectionFailed},
      {"rsa:2048",
       "serverAuth",
       {"-tls1_2", "-cipher", "AES128-GCM-SHA256"},
       NSURLErrorSecureConnectionFailed},
      {"rsa:1024",
       "serverAuth",
       {"-cipher", "ALL:@SECLEVEL=0"},
       NSURLErrorServerCertificateUntrusted},
      {"rsa:2048", "clientAuth", {}, NSURLErrorServerCertificateUntrusted},
  };
  const auto ca = [&](const std::string& file) { return folder_.path("known/" + file); };
  const std::string key = folder_.path("key"), certificate = folder_.path("certificate");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.key + row.purpose + testing::PrintToString(row.options));
    const auto config = folder_.write("config", "[req]\ndistinguished_name=n\n[n]\n[v3]\n"
                                                "basicConstraints=CA:FALSE\n"
                                                "subjectAltName=IP:127.0.0.1\n"
                                                "extendedKeyUsage=" +
                                                    row.purpose + '\n');
    test::ChildProcess issuer({"openssl",     "req", "-config",    config,      "-x509",
                               "-extensions", "v3",  "-newkey",    row.key,     "-nodes",
                               "-keyout",     key,   "-out",       certificate, "-subj",
                               "/CN=bad",     "-CA", ca("ca.pem"), "-CAkey",    ca("ca-key.pem")},
                              folder_.path("issuer"));
    ASSERT_EQ(issuer.wait(), 0) << test::TemporaryFolder::read(folder_.path("issuer"));
    std::vector<std::string> command{"openssl", "s_server", "-www",  "-accept",  "127.0.0.1:0",
                                     "-key",    key,        "-cert", certificate};
    command.insert(command.end(), row.options.begin(), row.options.end());
    const std::string log = folder_.write("log", "");
    const test::ChildProcess server(command, log);
    std::string said;
    const auto listens = [&] {
      said = test::TemporaryFolder::read(log);
      return said.find("ACCEPT 127.0.0.1:") != std::string::npos && said.back() == '\n';
    };
    ASSERT_TRUE(test::comesToHold(listens, [&] { return server.isRunning(); })) << said;
    const int port = std::stoi(said.substr(said.find("ACCEPT 127.0.0.1:") + 17));
    const auto outcome = send(authorized("https://127.0.0.1:" + std::to_string(port) + "/"));
    EXPECT_EQ(outcome.code(), row.code) << outcome.text();
  }
}

} // namespace
} // namespace zuvi
