#include "testing/kit/KitTest.h"

namespace zuvi {
namespace {

class TransportTest : public KitTest {
protected:
  /// What the completion of a request is given.
  std::optional<Value>
  answerTo(const std::function<void(ZVKYCNetworkManager::Completion)>& request) {
    int calls = 0;
    std::optional<Value> json;
    request([&](std::optional<Value> given, const std::optional<Error>&) {
      calls++;
      json = std::move(given);
    });
    EXPECT_TRUE(time.waitUntil([&] { return calls == 1; }));
    return json;
  }
};

TEST_F(TransportTest, PatchesWithTextJsonOrNothing) {
  backend.answer("{}");
  const std::pair<std::optional<Value>, std::string> rows[] = {
      {std::nullopt, ""},
      {"plain \"text\"", "plain \"text\""},
      {"é€.😀ß", "e?.?ss"},
      {Value::List{1, true, static_cast<const char*>(nullptr), "é"}, R"([1,true,null,"é"])"},
      {Value::List{812.0, -3.0F, 0.1F, 1e300, 0x1p53}, "[812,-3,0.1,1e+300,9007199254740992]"},
      {Value::Dictionary{{"n", std::nan("")}}, ""}, // sent all the same
  };
  for (const auto& row : rows) {
    answerTo([&](auto done) { transport().patch("v1/documents/d", row.first, done); });
    const auto request = backend.requests().back();
    EXPECT_EQ(request.method + " " + request.headers.at("content-type"), "PATCH application/json");
    EXPECT_FALSE(request.header("authorization")) << "nobody has registered";
    EXPECT_EQ(request.body, row.second);
  }
}

TEST_F(TransportTest, TakesOfAnAnswerWhatItIsFor) {
  const auto zeros = [](int values) { // and the list itself
    std::string text = "[0";
    for (int i = 2; i < values; i++)
      text += ",0";
    return text + ']';
  };
  const auto text = [](std::size_t length) { return '"' + std::string(length - 2, 'a') + '"'; };
  const auto nested = [](std::size_t n) { return std::string(n, '[') + std::string(n, ']'); };
  const auto get = [](auto done) { transport().get("p", done); };
  for (const auto& [most, tooMuch] : {std::pair(text(1 << 20), text((1 << 20) + 1)),
                                      {nested(64), nested(65)},
                                      {zeros(100'000), zeros(100'001)}}) {
    backend.answer(most);
    EXPECT_TRUE(answerTo(get)) << most.size();
    backend.answer(tooMuch);
    EXPECT_FALSE(answerTo(get)) << most.size();
  }
}

TEST_F(TransportTest, LetsGoOfCompletionsOnTheMainQueue) {
  struct Held {
    std::atomic<int>& off;
    explicit Held(std::atomic<int>& count) : off(count) {}
    ~Held() { off += !DispatchQueue::main().isCurrent(); }
  };
  backend.answer("{}");
  std::atomic<int> diedElsewhere = 0;
  for (int i = 0; i < 60; i++) {
    int calls = 0;
    transport().get("p",
                    [held = std::make_shared<Held>(diedElsewhere), &calls](auto&&...) { calls++; });
    EXPECT_TRUE(time.waitUntil([&] { return calls == 1; }));
  }
  EXPECT_EQ(diedElsewhere, 0) << "a screen would have died off the main queue";
}

} // namespace
} // namespace zuvi
