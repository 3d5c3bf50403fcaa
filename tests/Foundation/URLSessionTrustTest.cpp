#include "sandbox/core/tls/ServerCredentials.h"
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

  auto upload = to(server.url("/3"));
  upload.httpMethod = "POST";
  upload.httpBody = HTTPBody{Data(std::string("picture"))};
  EXPECT_EQ(send(upload).response->statusCode, 302); // goes nowhere but where it was sent
}

} // namespace
} // namespace zuvi
