// What a server keeps in its folders.

#include "sandbox/core/tls/ServerCredentials.h"
#include "testing/backend/ServerFixture.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace zuvi::sandbox::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

using Persistence = ServerFixture;

TEST_F(Persistence, EverythingIsThereAfterARestart) {
  start();
  const auto identity = newIdentity();
  const auto document = newDocument(identity, "national-id");
  ask("POST", "/track/?data=eyJldmVudCI6ImEiLCJwcm9wZXJ0aWVzIjp7fX0=");
  const auto before = json(ask("GET", "/arrivals.json"));
  const std::string film = before["identities"][0]["film"]["name"];
  for (const char* part : {"data", "data/files"})
    EXPECT_EQ(fs::status(folder_.path(part)).permissions(), fs::perms(0700)) << part;
  EXPECT_EQ(fs::status(folder_.path("data/sandbox.db")).permissions(), fs::perms(0600));

  start();
  EXPECT_EQ(json(ask("GET", "/arrivals.json")), before);
  EXPECT_EQ(ask("GET", "/files/" + film).body, test::film);
  EXPECT_EQ(addBack(document, "national-id").status, 200) << "the run goes on";
  const auto next = newIdentity();
  EXPECT_EQ(server_->arrivals()->identities.at(1).id, next);
}

TEST_F(Persistence, DamagedDatabasesAreRefused) {
  start();
  newDocument(newIdentity(), "passport");
  server_.reset();
  const auto path = folder_.path("data/sandbox.db");
  std::string bytes = zuvi::test::TemporaryFolder::read(path);
  ASSERT_GT(bytes.size(), 8192U);
  // The first page keeps the names of the tables; what they hold lies behind it.
  std::fill(bytes.begin() + 4096, bytes.end(), '\x5a');
  folder_.write("data/sandbox.db", bytes);
  ServerOptions options;
  options.dataFolder = folder_.path("data");
  const auto started = Server::start(std::move(options));
  ASSERT_FALSE(started);
  EXPECT_THAT(started.error().message, HasSubstr("damaged"));
}

TEST_F(Persistence, CredentialsAreMadeOnceAndRenewedBeforeTheyEnd) {
  constexpr std::time_t day = 24L * 3600;
  const fs::path tls = folder_.path("tls");
  const auto authority = [&] { return zuvi::test::TemporaryFolder::read(tls / "ca.pem"); };
  const std::time_t now = std::time(nullptr);
  const auto first = serverCredentials(tls, now);
  ASSERT_TRUE(first) << first.error().message;
  for (const char* key : {"ca-key.pem", "server-key.pem"})
    EXPECT_EQ(fs::status(tls / key).permissions(), fs::perms(0600)) << key;
  const std::string trusted = authority();
  EXPECT_EQ(serverCredentials(tls, now + 300 * day)->certificate, first->certificate);
  EXPECT_NE(serverCredentials(tls, now + 380 * day)->certificate, first->certificate);
  EXPECT_EQ(authority(), trusted) << "a client goes on trusting it";
}

} // namespace
} // namespace zuvi::sandbox::test
