#include "tests/sandbox/ServerFixture.h"

namespace zuvi::sandbox::test {
namespace {

class Chat : public ServerFixture {
protected:
  void SetUp() override { start(); }
  Answer post(const std::string& path, const Json& body) {
    return ask("POST", path, {}, jsonText(body));
  }
  Json news(int after) {
    return json(ask("GET", "/chat/news?visitor=v-1&after=" + std::to_string(after)))["lines"];
  }
};

TEST_F(Chat, AWaitingPageHearsTheOperatorAtOnce) {
  post("/chat/enter", {{"visitor", "v-1"}});
  const auto page =
      SessionFixture::start(to(server_->address() + "/chat/news?visitor=v-1&after=1"));
  EXPECT_EQ(post("/chat/operator", {{"visitor", "v-1"}, {"text", "Hello there"}}).status, 200);
  const auto heard = page.outcome();
  ASSERT_TRUE(heard.data) << heard.text();
  EXPECT_NE(heard.data->string().find("Operator"), std::string::npos);
  EXPECT_EQ(news(1).size(), 1U);
}

TEST_F(Chat, RefusesWhatIsNoMessage) {
  post("/chat/enter", {{"visitor", "v-1"}});
  const Json bodies[] = {"text",
                         {{"visitor", "v-1"}},
                         {{"visitor", "v-1"}, {"text", 1}},
                         {{"visitor", "v-1"}, {"text", ""}},
                         {{"visitor", "v-1"}, {"text", std::string(30'000, 'x')}},
                         {{"visitor", "nobody"}, {"text", "x"}}};
  for (const Json& body : bodies)
    EXPECT_NE(messageOf(post("/chat/say", body)), "no message") << jsonText(body).substr(0, 40);
  for (const char* id : {"", "a/b", "<script>"})
    EXPECT_EQ(post("/chat/enter", {{"visitor", id}}).status, 400) << id;
  EXPECT_EQ(news(0).size(), 1U);
  EXPECT_EQ(ask("GET", "/chat/news?visitor=v-1&after=x").status, 400);
}

} // namespace
} // namespace zuvi::sandbox::test
