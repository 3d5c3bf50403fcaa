#include "tests/kit/KitTest.h"

#include <regex>

namespace zuvi {
namespace {

struct Outcome {
  int calls = 0;
  bool onMain = false;
  std::optional<Value> json;
  std::optional<Error> error;
};

class TransportTest : public KitTest {
protected:
  TransportTest() { backend.answer("{}"); }

  static ZVKYCNetworkManager::Completion into(Outcome& outcome) {
    return [&outcome](std::optional<Value> json, std::optional<Error> error) {
      outcome = {outcome.calls + 1, DispatchQueue::main().isCurrent(), std::move(json),
                 std::move(error)};
    };
  }
  void await(const Outcome& outcome) {
    EXPECT_TRUE(time.waitUntil([&] { return outcome.calls > 0; }));
    time.settle();
    EXPECT_EQ(outcome.calls, 1);
    EXPECT_TRUE(outcome.onMain);
  }
};

TEST_F(TransportTest, EachUploadHasABoundaryOfItsOwnAndNamesAsTheyStand) {
  std::set<std::string> boundaries;
  for (int upload = 0; upload < 2; upload++) {
    Outcome outcome;
    transport().postImage("p", Data(std::string("x")), "picture",
                          Value::Dictionary{{"a \"b\"", "c"}}, into(outcome));
    await(outcome);
    static const std::regex form("multipart/form-data; boundary="
                                 "Boundary-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}");
    const auto request = backend.requests().back();
    const auto type = request.headers.at("content-type");
    EXPECT_TRUE(std::regex_match(type, form)) << type;
    boundaries.insert(type);
    EXPECT_THAT(request.body, testing::HasSubstr("; name=\"a \"b\"\"\r\n\r\nc\r\n"));
  }
  EXPECT_EQ(boundaries.size(), 2U);
}

TEST_F(TransportTest, PatchesWithTextJsonOrNothing) {
  const struct {
    std::optional<Value> parameters;
    std::string body;
  } rows[] = {
      {std::nullopt, ""},
      {"plain \"text\"", "plain \"text\""},
      {"é€.😀ß", "e?.?ss"},
      {Value::Dictionary{{"fields", Value::List{}}}, R"({"fields":[]})"},
      {Value::List{1, true, static_cast<const char*>(nullptr), "é"}, R"([1,true,null,"é"])"},
      {Value::List{812.0, -3.0F, 0.1F, 1e300, 0x1p53}, "[812,-3,0.1,1e+300,9007199254740992]"},
      {Value::Dictionary{{"n", std::nan("")}}, ""}, // sent all the same
      {7, ""},
  };
  for (const auto& row : rows) {
    Outcome outcome;
    transport().patch("v1/documents/d", row.parameters, into(outcome));
    await(outcome);
    const auto request = backend.requests().back();
    EXPECT_EQ(request.method, "PATCH");
    EXPECT_EQ(request.headers.at("content-type"), "application/json");
    EXPECT_FALSE(request.header("authorization")) << "nobody has registered";
    EXPECT_EQ(request.body, row.body);
  }
}

TEST_F(TransportTest, TakesOfAnAnswerWhatItIsFor) {
  const auto text = [](std::size_t length) { return '"' + std::string(length - 2, 'a') + '"'; };
  const auto nested = [](std::size_t n) { return std::string(n, '[') + std::string(n, ']'); };
  const auto list = [](std::size_t values) { // and the list itself
    std::string zeros = "[0";
    for (std::size_t i = 2; i < values; i++)
      zeros += ",0";
    return zeros + ']';
  };
  for (const auto& [make, most] :
       {std::pair<std::function<std::string(std::size_t)>, std::size_t>(text, std::size_t{1} << 20),
        {nested, 64},
        {list, 100'000}})
    for (const bool taken : {true, false}) {
      Outcome outcome;
      backend.answer(make(taken ? most : most + 1));
      transport().get("p", into(outcome));
      await(outcome);
      EXPECT_EQ(outcome.json.has_value(), taken) << most;
    }
}

TEST_F(TransportTest, RefusesWhatIsNoAddress) {
  for (const std::string path : {"v1/documents/a b", "v1/%zz"}) {
    Outcome outcome;
    transport().put(path, Data(), "photo", std::nullopt, into(outcome));
    EXPECT_EQ(outcome.calls, 0);
    await(outcome);
    EXPECT_FALSE(outcome.json);
    EXPECT_EQ(outcome.error.value().code, NSURLErrorBadURL);
  }
  EXPECT_TRUE(backend.requests().empty());
}

TEST_F(TransportTest, LetsGoOfCompletionsOnTheMainQueue) {
  struct Held {
    std::atomic<int>& off;
    explicit Held(std::atomic<int>& count) : off(count) {}
    ~Held() { off += !DispatchQueue::main().isCurrent(); }
  };
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
