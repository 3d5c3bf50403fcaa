#include "tests/sandbox/ServerFixture.h"

#include <gmock/gmock.h>

namespace zuvi::sandbox::test {
namespace {

class Failures : public ServerFixture {
protected:
  Answer create() { return upload("POST", "/v1/identities", SampleForm::ofFilm()); }
  std::size_t stored() { return server_->arrivals()->identities.size(); }
};

TEST_F(Failures, ConnectionsEndWhereTheRulesSay) {
  start({"identity:2:drop", "identity:3:cut"});
  EXPECT_EQ(create().status, 201);
  EXPECT_EQ(create().error, NSURLErrorNetworkConnectionLost) << "not taken for a stale connection";
  EXPECT_EQ(stored(), 1U);
  EXPECT_EQ(create().error, NSURLErrorNetworkConnectionLost);
  EXPECT_EQ(stored(), 2U) << "only the answer was lost";
  EXPECT_EQ(create().status, 201);
}

TEST_F(Failures, BodiesAreWhatTheRulesSay) {
  start({"identity:1:truncate", "identity:2:nonjson", "identity:3:empty",
         "identity:4:message=Too dark: try again", "identity:5:status=503", "identity:6:status=201",
         "identity:6:json=[]"});
  const auto truncated = create();
  EXPECT_EQ(truncated.error, 0);
  EXPECT_THAT(truncated.body, testing::StartsWith("{\"id"));
  EXPECT_FALSE(parseJson(truncated.body));
  const auto nonJson = create();
  EXPECT_FALSE(nonJson.body.empty() || parseJson(nonJson.body));
  EXPECT_EQ(create().body, "");
  const auto message = create();
  EXPECT_EQ(message.status, 422);
  EXPECT_EQ(message.body, R"({"message":"Too dark: try again"})");
  EXPECT_EQ(create().status, 503);
  const auto both = create();
  EXPECT_EQ(both.body, "[]");
  EXPECT_EQ(both.status, 201);
  EXPECT_EQ(stored(), 1U) << "of the truncated answer only";
}

TEST_F(Failures, NeverEndsWithTheClientOrTheServer) {
  start({"merchant:*:never"});
  timeout_ = 0.1;
  EXPECT_EQ(ask("GET", "/api/v1/merchants/me").error, NSURLErrorTimedOut);

  const auto waiting = SessionFixture::start(to(server_->address() + "/api/v1/merchants/me"));
  EXPECT_FALSE(waiting.within(std::chrono::milliseconds(150)));
  server_->stop();
  EXPECT_NE(waiting.outcome().code(), 0);
  EXPECT_EQ(server_->requests().size(), 2U) << "both handlers came to their end";
}

TEST(FailRules, RefuseWhatDoesNotParse) {
  for (const std::string rule :
       {"", "identity", "film:1:drop", "identity:0:drop", "identity:4-2:drop", "identity:1-:drop",
        "identity:99999999999:drop", "identity:1:explode", "identity:1:drop=1",
        "identity:1:status=99", "identity:1:delay=nan"})
    EXPECT_FALSE(FailRule::parse(rule)) << rule;
}

} // namespace
} // namespace zuvi::sandbox::test
