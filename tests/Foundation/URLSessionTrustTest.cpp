#include "sandbox/core/tls/ServerCredentials.h"
#include "testing/backend/BadServer.h"
#include "testing/backend/SessionFixture.h"
#include "testing/support/TemporaryFolder.h"

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
    const auto outcome = send(to(server.url("/", host)));
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

TEST_F(URLSessionTrustTest, WhatIsMeantForOneHostGoesToNoOther) {
  const struct {
    const char *method, *path, *where, *arrives;
  } rows[] = {
      {"GET", "/302", "same", "GET secret"},
      {"GET", "/302", "other", "GET"},
      {"GET", "/302", "plain", "GET"},
      {"POST", "/301", "same", "GET secret"},
      {"PUT", "/302", "same", "PUT secret picture"},
      {"POST", "/303", "same", "GET secret"},
      {"POST", "/307", "same", "POST secret picture"},
      {"PUT", "/308", "same", "PUT secret picture"},
      {"POST", "/302", "other", "GET"},
      {"POST", "/307", "other", "not at all"},
      {"PUT", "/308", "plain", "not at all"},
      {"PUT", "/302", "other", "not at all"},
  };
  const auto show = [](const Request& request) {
    const bool secret = request.headers.contains("authorization"), body = !request.body.empty();
    EXPECT_EQ(request.headers.contains("content-type"), body);
    return Reply{
        200, {}, request.method + (secret ? " secret" : "") + (body ? " " + request.body : "")};
  };
  const LoopbackServer plain(show);
  std::string target;
  const LoopbackServer server(
      [&](const Request& request) {
        if (request.path == "/end") return show(request);
        return Reply{std::stoi(request.path.substr(1)), {{"Location", target}}, "not at all"};
      },
      good_);
  const std::map<std::string, std::string> targets{
      {"same", "/end"}, {"other", server.url("/end", "localhost")}, {"plain", plain.url("/end")}};
  for (const auto& [method, path, where, arrives] : rows) {
    SCOPED_TRACE(std::string(method) + path + where);
    target = targets.at(where);
    auto request = to(server.url(path));
    request.httpMethod = method;
    request.allHTTPHeaderFields = {{"authorization", "Bearer secret"}};
    if (request.httpMethod != "GET") {
      request.allHTTPHeaderFields["Content-Type"] = "image/jpeg";
      request.httpBody = HTTPBody{Data(std::string("pic")), Data(std::string("ture"))};
    }
    EXPECT_EQ(send(request).data.value_or(Data()).string(), arrives);
  }
}

/// Real servers that were set up badly, all of an authority that is trusted.
TEST_F(URLSessionTrustTest, AWeakConnectionSeesNoRequest) {
  const std::pair<std::string, int> rows[] = {
      {"2048 serverAuth", 0},
      {"2048 serverAuth -tls1_2 -cipher ECDHE-RSA-AES128-SHA", 0},
      {"2048 serverAuth -tls1_1 -cipher ALL:@SECLEVEL=0", NSURLErrorSecureConnectionFailed},
      {"2048 serverAuth -tls1_2 -cipher AES128-GCM-SHA256", NSURLErrorSecureConnectionFailed},
      {"1024 serverAuth -cipher ALL:@SECLEVEL=0", NSURLErrorServerCertificateUntrusted},
      {"2048 clientAuth", NSURLErrorServerCertificateUntrusted},
  };
  for (const auto& [setup, code] : rows) {
    SCOPED_TRACE(setup);
    const test::BadServer server(folder_, setup);
    const auto outcome = send(to(server.url()));
    EXPECT_EQ(outcome.code(), code) << outcome.text();
  }
}

} // namespace
} // namespace zuvi
