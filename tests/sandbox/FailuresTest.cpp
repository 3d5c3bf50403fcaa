#include "tests/sandbox/ServerFixture.h"

namespace zuvi::sandbox::test {
namespace {

using Failures = ServerFixture;

TEST_F(Failures, NeverEndsWithTheClientOrTheServer) {
  start({"merchant:*:never"});
  timeout_ = 0.1;
  EXPECT_EQ(ask("GET", "/api/v1/merchants/me").error, NSURLErrorTimedOut);

  auto request = to(server_->address() + "/api/v1/merchants/me");
  request.allHTTPHeaderFields = {{"Authorization", "Bearer demo"}};
  const auto waiting = SessionFixture::start(request);
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
