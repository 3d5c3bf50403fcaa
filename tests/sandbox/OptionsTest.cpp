#include "sandbox/core/Options.h"
#include "sandbox/core/text/Json.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <set>

namespace zuvi::sandbox::test {
namespace {

using testing::HasSubstr;

std::string faultOf(const std::vector<std::string>& arguments) {
  const auto options = readOptions(arguments);
  return options ? "none" : options.error().message;
}

TEST(Options, ReadsEveryOption) {
  const zuvi::test::TemporaryFolder folder;
  const auto merchants = folder.write("merchants.json", R"({"mine":{"name":"Mine"}})");
  const auto options =
      readOptions({"--port", "0", "--data", "d", "--merchant", merchants, "--tls", "t", "--fail",
                   "identity:1:drop", "--fail", "photo:2-4:message=a:b=c"});
  ASSERT_TRUE(options) << options.error().message;
  EXPECT_EQ(options->task, Task::serve);
  EXPECT_EQ(options->server.port, 0);
  EXPECT_EQ(options->server.dataFolder, "d");
  EXPECT_EQ(options->server.tlsFolder, "t");
  EXPECT_TRUE(options->server.merchants.knows("mine"));
  EXPECT_FALSE(options->server.merchants.knows("demo"));
  ASSERT_EQ(options->server.failRules.size(), 2U);
  EXPECT_EQ(options->server.failRules[1].text, "a:b=c");
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
  for (const char* rule : {"",
                           "identity",
                           "identity:1",
                           "film:1:drop",
                           "identity::drop",
                           "identity:0:drop",
                           "identity:4-2:drop",
                           "identity:1-:drop",
                           "identity:-1:drop",
                           "identity:99999999999:drop",
                           "identity:1:",
                           "identity:1:explode",
                           "identity:1:drop=1",
                           "identity:1:status=99",
                           "identity:1:status=ok",
                           "identity:1:delay=",
                           "identity:1:delay=-1",
                           "identity:1:delay=nan",
                           "identity:1:delay=1e9",
                           "identity:1: drop"})
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

TEST(Merchants, SamplesCoverEveryConfiguration) {
  const Merchants samples = Merchants::samples();
  std::set<std::string> colors;
  std::set<std::string> languages;
  std::set<std::pair<bool, bool>> lists;
  bool repeated = false;
  for (const auto& clientId : samples.clientIds()) {
    const auto json = parseJson(*samples.answer(clientId, "http://here"));
    ASSERT_TRUE(json);
    EXPECT_TRUE(stringMember(*json, "name")) << clientId;
    if (!json->contains("configurations")) continue;
    const Json& configuration = (*json)["configurations"][0];
    colors.insert(configuration["color"]);
    languages.insert(configuration["language"]);
    const Json& required = configuration["documents"]["required"];
    lists.emplace(!required.empty(), !configuration["documents"]["optional"].empty());
    repeated = repeated || (required.size() > 1 && required[0] == required[1]);
  }
  EXPECT_EQ(colors, (std::set<std::string>{"blue", "green", "red", "pink", "orange", "yellow"}));
  EXPECT_EQ(languages, (std::set<std::string>{"en", "es", "fr", "pt"}));
  EXPECT_EQ(lists.size(), 4U) << "with and without each of the two lists";
  EXPECT_TRUE(repeated);
}

TEST(Merchants, AnswerIsWhatTheFileSays) {
  const auto merchants =
      Merchants::fromText(R"({"a":{"z":1,"photo":"{sandbox}/x {sandbox}","name":"\u00e9"}})");
  ASSERT_TRUE(merchants) << merchants.error().message;
  EXPECT_EQ(
      merchants->answer("a", "http://127.0.0.1:1"),
      "{\"z\":1,\"photo\":\"http://127.0.0.1:1/x http://127.0.0.1:1\",\"name\":\"\xc3\xa9\"}");
  EXPECT_EQ(merchants->answer("A", ""), std::nullopt);
  for (const char* text : {"", "[]", "{}", "{\"a\":1}", "{\"\":{}}", "{\"a\":{}"})
    EXPECT_FALSE(Merchants::fromText(text)) << text;
}

} // namespace
} // namespace zuvi::sandbox::test
