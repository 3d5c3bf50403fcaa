#include "sandbox/core/Options.h"

#include <gmock/gmock.h>

namespace zuvi::sandbox::test {
namespace {

using testing::HasSubstr;

std::string faultOf(const std::vector<std::string>& arguments) {
  const auto options = readOptions(arguments);
  return options ? "none" : options.error().message;
}

TEST(Options, RefusesWhatItCannotDo) {
  EXPECT_THAT(faultOf({"--colour", "red"}), HasSubstr("no option --colour"));
  EXPECT_THAT(faultOf({"--data"}), HasSubstr("lacks its value"));
  EXPECT_THAT(faultOf({"--data", "a", "--data", "b"}), HasSubstr("twice"));
  for (const char* port : {"65536", "-1", "80x", " 80"})
    EXPECT_THAT(faultOf({"--port", port}), HasSubstr("0 to 65535")) << port;
  EXPECT_THAT(faultOf({"--pictures", "p"}), HasSubstr("--snapshot"));
  EXPECT_THAT(faultOf({"--snapshot", "s", "--port", "1"}), HasSubstr("--snapshot"));
  EXPECT_THAT(faultOf({"--merchant", "/nowhere/at.all"}), HasSubstr("cannot read"));
}

TEST(FailRules, RefuseWhatDoesNotParse) {
  for (const std::string rule :
       {"", "identity", "film:1:drop", "identity:0:drop", "identity:4-2:drop", "identity:1-:drop",
        "identity:99999999999:drop", "identity:1:explode", "identity:1:drop=1",
        "identity:1:status=99", "identity:1:delay=nan"})
    EXPECT_FALSE(FailRule::parse(rule)) << rule;
}

TEST(FailRules, ChooseTheirCalls) {
  FailPlan plan;
  plan.reset(*FailPlan::parse({"photo:2-3:empty", "photo:3:delay=0.25", "verify:*:status=500"}));
  EXPECT_FALSE(plan.dropsConnections());
  EXPECT_EQ(plan.nextCall("photo").size(), 0U);
  EXPECT_EQ(plan.nextCall("verify").size(), 1U) << "each operation counts by itself";
  EXPECT_EQ(plan.nextCall("photo").size(), 1U);
  const auto third = plan.nextCall("photo");
  ASSERT_EQ(third.size(), 2U);
  EXPECT_EQ(third[1].delay.count(), 250);
  EXPECT_EQ(plan.nextCall("photo").size(), 0U);
  EXPECT_EQ(plan.nextCall("verify").size(), 1U);
  plan.reset(*FailPlan::parse({"photo:1:drop"}));
  EXPECT_EQ(plan.nextCall("photo").size(), 1U) << "other rules count from the start";
  EXPECT_TRUE(plan.dropsConnections());
}

} // namespace
} // namespace zuvi::sandbox::test
