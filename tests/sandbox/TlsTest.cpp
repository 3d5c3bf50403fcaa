#include "sandbox/core/tls/ServerCredentials.h"
#include "tests/sandbox/ServerFixture.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace zuvi::sandbox::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr std::time_t day = 24L * 3600;

class Tls : public ServerFixture {
protected:
  fs::path tls_ = folder_.path("tls");
  std::string authority() const { return zuvi::test::TemporaryFolder::read(tls_ / "ca.pem"); }
};

TEST_F(Tls, OnlyItsOwnAuthorityVouchesForTheServer) {
  ServerOptions options;
  options.tlsFolder = tls_;
  start(std::move(options));
  EXPECT_THAT(server_->address(), testing::StartsWith("https://127.0.0.1:"));
  const auto ask = [this] { return this->ask("GET", "/api/v1/merchants/me"); };
  URLSession::setAdditionalAuthorities(tls_ / "ca.pem");
  EXPECT_EQ(ask().status, 200);
  URLSession::setAdditionalAuthorities("");
  EXPECT_EQ(ask().error, NSURLErrorServerCertificateUntrusted);
}

TEST_F(Tls, IsMadeOnceAndRenewedBeforeItEnds) {
  const std::time_t now = std::time(nullptr);
  const auto first = serverCredentials(tls_, now);
  ASSERT_TRUE(first) << first.error().message;
  for (const char* key : {"ca-key.pem", "server-key.pem"})
    EXPECT_EQ(fs::status(tls_ / key).permissions(), fs::perms(0600)) << key;
  const std::string trusted = authority();
  EXPECT_EQ(serverCredentials(tls_, now + 300 * day)->certificate, first->certificate);
  EXPECT_NE(serverCredentials(tls_, now + 380 * day)->certificate, first->certificate);
  EXPECT_EQ(authority(), trusted) << "a client goes on trusting it";
}

TEST_F(Tls, MendsTheServerButNeverTheAuthority) {
  const auto first = serverCredentials(tls_);
  ASSERT_TRUE(first);
  const fs::path other = folder_.path("other");
  ASSERT_TRUE(serverCredentials(other));
  fs::copy_file(other / "server.pem", tls_ / "server.pem", fs::copy_options::overwrite_existing);
  fs::copy_file(other / "server-key.pem", tls_ / "server-key.pem",
                fs::copy_options::overwrite_existing);
  EXPECT_NE(serverCredentials(tls_)->certificate, serverCredentials(other)->certificate)
      << "one that another authority signed is not used";

  fs::copy_file(other / "ca-key.pem", tls_ / "ca-key.pem", fs::copy_options::overwrite_existing);
  const auto mixed = serverCredentials(tls_);
  ASSERT_FALSE(mixed);
  EXPECT_THAT(mixed.error().message, HasSubstr("key is that of another"));
  fs::remove(tls_ / "ca-key.pem");
  EXPECT_FALSE(serverCredentials(tls_));
}

} // namespace
} // namespace zuvi::sandbox::test
