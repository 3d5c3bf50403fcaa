#include "tests/sandbox/ServerFixture.h"

#include <gmock/gmock.h>

namespace zuvi::sandbox::test {
namespace {

class Chat : public ServerFixture {
protected:
  Answer post(const std::string& path, const Json& body) {
    return ask("POST", path, {}, jsonText(body));
  }
  Json news(int after) {
    return json(ask("GET", "/chat/news?visitor=v-1&after=" + std::to_string(after)))["lines"];
  }
  static Json variables() { return {{"Merchant", "Ca & Da = 100 %"}}; }
};

TEST_F(Chat, TheTemplateLeadsToThePage) {
  start();
  const auto address =
      stringMember(json(ask("GET", "/app/mobile/urls.json")), "chat_url").value_or("");
  EXPECT_EQ(address, "127.0.0.1:" + std::to_string(server_->port()) +
                         "/chat/open?license={%license%}&group={%group%}");
  const auto page = ask("GET", "/chat/open?license=1&group=0");
  EXPECT_EQ(page.headers.at("content-type"), "text/html; charset=utf-8");
  EXPECT_NE(page.headers.at("content-security-policy").find("default-src 'none'"),
            std::string::npos);
  for (const char* path : {"/chat/chat.js", "/chat/chat.css", "/operator.js"})
    EXPECT_EQ(ask("GET", path).status, 200) << path;
}

TEST_F(Chat, WhatIsSaidIsAnsweredAndKeptInOrder) {
  start();
  EXPECT_EQ(post("/chat/say", {{"visitor", "v-1"}, {"text", "early"}}).status, 400);
  EXPECT_EQ(ask("GET", "/chat/news?visitor=v-1&after=0").status, 404);
  post("/chat/enter", {{"visitor", "v-1"}, {"name", "Ana"}, {"variables", variables()}});
  post("/chat/enter", {{"visitor", "v-1"}, {"name", "Ana"}}); // the page was loaded again
  EXPECT_EQ(post("/chat/say", {{"visitor", "v-1"}, {"text", "Olá <b>"}}).status, 200);
  const Json lines = news(0);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[1]["author"], "");
  EXPECT_EQ(lines[1]["text"], "Olá <b>");
  EXPECT_EQ(lines[2]["author"], "Sandbox");
  EXPECT_EQ(news(2).size(), 1U);
  EXPECT_EQ(lines[2]["number"], 3);
}

TEST_F(Chat, AWaitingPageHearsTheOperatorAtOnce) {
  start();
  post("/chat/enter", {{"visitor", "v-1"}});
  const auto page =
      SessionFixture::start(to(server_->address() + "/chat/news?visitor=v-1&after=1"));
  EXPECT_EQ(post("/chat/operator", {{"visitor", "v-1"}, {"text", "Hello there"}}).status, 200);
  const auto heard = page.outcome();
  ASSERT_TRUE(heard.data) << heard.text();
  const Json lines = parseJson(heard.data->view()).value_or(Json())["lines"];
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0]["author"], "Operator");
  const Json all = json(ask("GET", "/chat/conversations"));
  EXPECT_EQ(all[0]["lines"].size(), 2U);
}

TEST_F(Chat, RefusesWhatIsNoMessage) {
  start();
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

TEST_F(Chat, FailsOnPurpose) {
  start({"chat-template:1:json={}", "chat-template:2:nonjson", "chat-page:1:cut"});
  EXPECT_EQ(ask("GET", "/app/mobile/urls.json").body, "{}");
  EXPECT_FALSE(parseJson(ask("GET", "/app/mobile/urls.json").body));
  EXPECT_EQ(ask("GET", "/app/mobile/urls.json").status, 200);
  EXPECT_NE(ask("GET", "/chat/open").error, 0);
  EXPECT_EQ(ask("GET", "/chat/open").error, 0);
}

} // namespace
} // namespace zuvi::sandbox::test
