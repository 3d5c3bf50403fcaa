// Where the chat page is: the template from the server, and the address made of it.

#include "kit/Helper/LiveChat/BuildUrl.h"
#include "kit/Helper/LiveChat/JSONRequestCache.h"
#include "tests/chat/ChatTest.h"

#include <latch>

namespace zuvi::test {
namespace {

class AddressTest : public ChatTest {
protected:
  using Answer = std::pair<std::optional<std::string>, std::optional<Error>>;
  /// The answer to a request; absent when none comes.
  std::optional<Answer> request(JSONRequestCache& cache) {
    std::optional<Answer> answer;
    std::latch done(1);
    const auto task = cache.request([&](const auto& templateURL, const auto& error) {
      answer = Answer{templateURL, error};
    });
    EXPECT_TRUE(
        time.waitUntil([&] { return !task || task->state() == URLSessionTaskState::Completed; }));
    // What comes after on the session's queue shows that the handler has had its turn.
    const auto url = URL::fromString(server.url("/next")).value();
    URLSession::shared()
        .dataTask(URLRequest(url), [&](auto, auto, auto) { done.count_down(); })
        ->resume();
    done.wait();
    return answer;
  }
};

TEST_F(AddressTest, IsBuiltWithBothEscapings) {
  const auto built = [](const std::string& text, const LiveChatConfiguration& configuration,
                        const std::optional<CustomVariables>& variables = {}) {
    const auto url = buildUrl(text, configuration, variables, 2000);
    return url ? url->absoluteString() : "";
  };
  EXPECT_EQ(
      built("chat-host/open?license={%license%}&group={%group%}", {"4173052", "0", "Guest User"}),
      "https://chat-host/open?license=4173052&group=0&native_platform=ios&name=Guest%20User");
  EXPECT_EQ(built("h/{%group%}?g={%group%}&l={%license%}", {"{%group%}", "7"}),
            "https://h/7?g=7&l=7&native_platform=ios");
  const std::string begin = "https://h/o?a=1&native_platform=ios";
  const std::tuple<const char*, const char*, std::optional<CustomVariables>, const char*> rows[] = {
      {" ", "a&b=c+d@e.f/?", {}, "&name=%20&email=a&b=c+d%40e.f%2F%3F"},
      {"Zoë [x]:;", "\xff", CustomVariables{}, "&name=Zo%C3%AB%20[x]:;&params="},
      {"", "", {{{"Merchant", "a b"}}}, "&params=Merchant%3Da%2520b"},
      {"", "", {{{"b", "100%"}, {"a&", "x=y\n"}}}, "&params=a%2526%3Dx%253Dy%250A%26b%3D100%2525"},
      {"",
       "",
       {{{"k", "ë\u3000,;:+'[]~"}, {"lost", "\xff"}}},
       "&params=k%3Dë%25E3%2580%2580,;:+'[]~"},
  };
  for (const auto& [name, email, variables, end] : rows)
    EXPECT_EQ(built("h/o?a=1", {"1", "0", name, email}, variables), begin + end);
  EXPECT_EQ(built("h/o?a=1", {"1"}, {{{"tab", "\t"}}}), "");
  const LiveChatConfiguration longOne{"1", "0", std::string(5000, 'x'), ""};
  EXPECT_GT(buildUrl("h/o?a=1", longOne, {}, 2000)->absoluteString().size(), 5000U);
}

TEST_F(AddressTest, TemplateIsFetchedOnceAndKeptWhileItIsGood) {
  const auto cache = std::make_shared<JSONRequestCache>();
  answer({200, {}, R"({"chat_url":"a.b/c?d=e","more":[]})"});
  EXPECT_EQ(request(*cache)->first, "a.b/c?d=e");
  EXPECT_EQ(server.requests().front().path, "/app/mobile/urls.json");
  answer({200, {}, "broken"});
  bool atOnce = false;
  EXPECT_EQ(cache->request([&](const auto& known, const auto& error) {
    atOnce = known == "a.b/c?d=e" && !error;
  }),
            nullptr);
  EXPECT_TRUE(atOnce);

  const auto fresh = std::make_shared<JSONRequestCache>();
  EXPECT_FALSE(request(*fresh)->first);
  EXPECT_THAT(printed(), ElementsAre("error: The answer is not JSON."));
  answer({200, {}, R"({"chat_url":"a.b/c"})" + std::string(1 << 16, ' ')});
  EXPECT_FALSE(request(*fresh)->first) << "too long for an address";
  for (const char* document : {R"({"chat_url":7})", "{}", "[1]"}) {
    answer({200, {}, document});
    EXPECT_FALSE(request(*fresh)) << document << " is never answered";
    EXPECT_EQ(printed().at(0).rfind("error: Invalid JSON: [", 0), 0U) << document;
  }
  answer({200, {}, "", Reply::Mode::DropConnection});
  const auto lost = request(*fresh);
  EXPECT_TRUE(!lost->first && lost->second);
  EXPECT_THAT(printed(), IsEmpty());
  ZVEndpoints::chatTemplateURL() = "no address";
  EXPECT_TRUE(request(*std::make_shared<JSONRequestCache>())->second);
}

} // namespace
} // namespace zuvi::test
