// Where the chat page is: the template from the server, and the address made of it.

#include "kit/Helper/LiveChat/BuildUrl.h"
#include "kit/Helper/LiveChat/JSONRequestCache.h"
#include "tests/chat/ChatTest.h"

#include <latch>

namespace zuvi::test {
namespace {

class AddressTest : public ChatTest {
protected:
  struct Answer {
    std::optional<std::string> templateURL;
    std::optional<Error> error;
  };
  /// The answer to a request; absent when none came before the next line was printed.
  std::optional<Answer> request(JSONRequestCache& cache) {
    std::mutex mutex;
    std::optional<Answer> answer;
    const auto task = cache.request([&](const auto& templateURL, const auto& error) {
      const std::lock_guard lock(mutex);
      answer = Answer{templateURL, error};
    });
    // The task is over before the handler comes, so the next request shows that it has been.
    std::latch done(1);
    const auto next =
        URLSession::shared().dataTask(URLRequest(URL::fromString(server.url("/next")).value()),
                                      [&](auto, auto, auto) { done.count_down(); });
    const bool over =
        time.waitUntil([&] { return !task || task->state() == URLSessionTaskState::Completed; });
    EXPECT_TRUE(over);
    next->resume();
    done.wait();
    const std::lock_guard lock(mutex);
    return answer;
  }
};

TEST_F(AddressTest, IsBuiltWithBothEscapings) {
  const CustomVariables none;
  struct Case {
    std::string templateURL;
    LiveChatConfiguration configuration;
    std::optional<CustomVariables> variables;
    std::string address; ///< empty: none
  };
  const std::string begin = "https://h/o?a=1&native_platform=ios";
  const Case cases[] = {
      {"chat-host/open?license={%license%}&group={%group%}",
       {"4173052", "0", "Guest User", ""},
       {},
       "https://chat-host/open?license=4173052&group=0&native_platform=ios&name=Guest%20User"},
      {"h/{%group%}?g={%group%}&l={%license%}",
       {"{%group%}", "7", "", ""},
       {},
       "https://h/7?g=7&l=7&native_platform=ios"},
      {"h/o?a=1",
       {"1", "0", " ", "a&b=c+d@e.f/?"},
       {},
       begin + "&name=%20&email=a&b=c+d%40e.f%2F%3F"},
      {"h/o?a=1", {"1", "0", "Zoë [x]:;", "\xff"}, none, begin + "&name=Zo%C3%AB%20[x]:;&params="},
      {"h/o?a=1", {"1"}, {{{"Merchant", "a b"}}}, begin + "&params=Merchant%3Da%2520b"},
      {"h/o?a=1",
       {"1"},
       {{{"b", "100%"}, {"a&", "x=y\n"}}},
       begin + "&params=a%2526%3Dx%253Dy%250A%26b%3D100%2525"},
      {"h/o?a=1",
       {"1"},
       {{{"k", "ë\u3000,;:+'[]~"}, {"lost", "\xff"}}},
       begin + "&params=k%3Dë%25E3%2580%2580,;:+'[]~"},
      {"h/o?a=1", {"1"}, {{{"", ""}}}, begin + "&params=%3D"},
      {"h/o?a=1", {"1"}, {{{"tab", "\t"}}}, ""},
      {"h/o?a=1\n", {"1"}, {}, ""},
      {"h/o?a={%license%}", {"a b"}, {}, ""},
  };
  for (const Case& each : cases) {
    const auto url = buildUrl(each.templateURL, each.configuration, each.variables, 2000);
    EXPECT_EQ(url ? url->absoluteString() : "", each.address) << each.templateURL;
  }
  const LiveChatConfiguration longOne{"1", "0", std::string(5000, 'x'), ""};
  EXPECT_GT(buildUrl("h/o?a=1", longOne, {}, 2000)->absoluteString().size(), 5000U);
}

TEST_F(AddressTest, TemplateIsFetchedOnceAndKeptWhileItIsGood) {
  const auto cache = std::make_shared<JSONRequestCache>();
  answer({200, {}, R"({"chat_url":"a.b/c?d=e","more":[]})"});
  EXPECT_EQ(request(*cache)->templateURL, "a.b/c?d=e");
  EXPECT_EQ(server.requests().front().path, "/app/mobile/urls.json");
  answer({200, {}, "broken"});
  bool atOnce = false;
  EXPECT_EQ(cache->request([&](const auto& known, const auto& error) {
    atOnce = known == "a.b/c?d=e" && !error;
  }),
            nullptr);
  EXPECT_TRUE(atOnce);

  const auto fresh = std::make_shared<JSONRequestCache>();
  EXPECT_FALSE(request(*fresh)->templateURL);
  const auto lines = printed();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].rfind("error: ", 0), 0U);
  EXPECT_EQ(lines[0].find("Invalid JSON"), std::string::npos);
  for (const char* document : {R"({"chat_url":7})", "{}", "[1]"}) {
    answer({200, {}, document});
    EXPECT_FALSE(request(*fresh)) << document << " is never answered";
    EXPECT_EQ(printed().at(0).rfind("error: Invalid JSON: [", 0), 0U) << document;
  }
  answer({200, {}, "", Reply::Mode::DropConnection});
  const auto lost = request(*fresh);
  EXPECT_FALSE(lost->templateURL);
  EXPECT_TRUE(lost->error);
  EXPECT_THAT(printed(), IsEmpty());
  ZVEndpoints::chatTemplateURL() = "no address";
  EXPECT_TRUE(request(*std::make_shared<JSONRequestCache>())->error);
}

TEST_F(AddressTest, ANewRequestCancelsTheOldOneWhichForgetsTheTemplate) {
  answer({200, {}, "", Reply::Mode::NeverAnswer});
  auto cache = std::make_shared<JSONRequestCache>();
  std::atomic<int> cancelled = 0, calls = 0;
  cache->request([&](const auto& templateURL, const auto& error) {
    cancelled = !templateURL && error && error->code == NSURLErrorCancelled;
  });
  const auto old = cache->currentTask();
  EXPECT_EQ(old->state(), URLSessionTaskState::Running);
  cache->request([&](const auto&, const auto&) { calls++; });
  EXPECT_TRUE(time.waitUntil([&] { return cancelled == 1; }));
  EXPECT_NE(cache->currentTask(), old);
  const auto last = cache->currentTask();
  cache = nullptr; // nobody is left to be told
  last->cancel();
  EXPECT_TRUE(time.waitUntil([&] { return last->state() == URLSessionTaskState::Completed; }));
  answer({});
  request(*std::make_shared<JSONRequestCache>()); // all before it has been told
  EXPECT_EQ(calls, 0);
}

} // namespace
} // namespace zuvi::test
