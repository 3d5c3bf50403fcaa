#include "platform/Foundation/Error.h"
#include "tests/kit/KitTest.h"

#include <regex>

namespace zuvi {
namespace {

using test::Reply;

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
  test::Request get() {
    Outcome outcome;
    transport().get("path", into(outcome));
    await(outcome);
    return backend.requests().back();
  }
  static std::string boundaryOf(const test::Request& request) {
    static const std::regex form("multipart/form-data; boundary="
                                 "(Boundary-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12})");
    std::smatch match;
    const std::string type = request.headers.at("content-type");
    return std::regex_match(type, match, form) ? match[1].str() : "no boundary in " + type;
  }
};

TEST_F(TransportTest, CarriesTheAuthorizationAsLongAsThereIsOne) {
  for (const auto& value :
       {std::optional<std::string>(), std::optional<std::string>("Bearer ä b")}) {
    manager().authorization = value;
    const auto request = get();
    EXPECT_EQ(request.header("authorization").has_value(), value.has_value());
    EXPECT_EQ(request.header("authorization").value_or("Bearer ä b"), "Bearer ä b");
  }
}

TEST_F(TransportTest, BuildsMultipartBodiesByteByByte) {
  manager().authorization = "Bearer me";
  const std::string bytes("a\r\n--b\0\xff\xd8 end", 14);
  const Value::Dictionary fields{{"flag", true},
                                 {"metadata[a \"b\"]", "line\r\nend \"quoted\" é"},
                                 {"number", 3},
                                 {"real", 2.5},
                                 {"tree", Value::Dictionary{{"k", Value::List{1, "v"}}}}};
  const std::vector<std::pair<std::string, std::string>> texts{
      {"flag", "true"},
      {"metadata[a \"b\"]", "line\r\nend \"quoted\" é"},
      {"number", "3"},
      {"real", "2.5"},
      {"tree", R"(["k": [1, "v"]])"}};
  using Upload = void (ZVKYCNetworkManager::*)(const std::string&, const Data&, const std::string&,
                                               const ZVKYCNetworkManager::Parameters&,
                                               ZVKYCNetworkManager::Completion);
  const auto image = &ZVKYCNetworkManager::postImage, video = &ZVKYCNetworkManager::postVideo,
             put = &ZVKYCNetworkManager::put;
  const struct {
    Upload call;
    std::string method, file, type;
    ZVKYCNetworkManager::Parameters parameters;
  } rows[] = {
      {image, "POST", "user-profile.jpg", "image/jpeg", fields},
      {video, "POST", "liveness.mov", "video/quicktime", Value::Dictionary{}},
      {put, "PUT", "user-profile.jpg", "image/jpeg", std::nullopt},
  };
  std::set<std::string> boundaries;
  for (const auto& row : rows) {
    Outcome outcome;
    (transport().*row.call)("p", Data(bytes), "picture", row.parameters, into(outcome));
    await(outcome);
    const auto request = backend.requests().back();
    const std::string line = "--" + boundaryOf(request);
    std::string body;
    if (row.parameters && !row.parameters->empty())
      for (const auto& [key, text] : texts)
        body += line + "\r\nContent-Disposition: form-data; name=\"" + key + "\"\r\n\r\n" + text +
                "\r\n";
    body += line + "\r\nContent-Disposition: form-data; name=\"picture\"; filename=\"" + row.file +
            "\"\r\nContent-Type: " + row.type + "\r\n\r\n" + bytes + "\r\n" + line + "--\r\n";
    EXPECT_EQ(request.body, body);
    EXPECT_EQ(request.method, row.method);
    EXPECT_EQ(request.headers.at("authorization"), "Bearer me");
    boundaries.insert(line);
  }
  EXPECT_EQ(boundaries.size(), std::size(rows)) << "each request has a boundary of its own";
  EXPECT_EQ(get().headers.at("content-type"), "application/json") << "the table stays as it was";
}

TEST_F(TransportTest, PatchesWithTextJsonOrNothing) {
  const struct {
    std::optional<Value> parameters;
    std::string body;
  } rows[] = {
      {std::nullopt, ""},
      {"plain \"text\"", "plain \"text\""},
      {"é€.😀", "??.?"},
      {Value::Dictionary{{"fields", Value::List{}}}, R"({"fields":[]})"},
      {Value::List{1, true, nullptr, "é"}, R"([1,true,null,"é"])"},
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
    EXPECT_EQ(request.body, row.body);
  }
}

TEST_F(TransportTest, TurnsEveryAnswerIntoOneCompletion) {
  const struct {
    Reply reply;
    std::optional<std::string> json; // absent: none
    bool error;
  } rows[] = {
      {{422, {}, R"({"message":"no"})"}, R"(["message": "no"])", false},
      {{500, {}, R"("bare")"}, "bare", false},
      {{200, {}, "null"}, "nil", false},
      {{502, {}, "<html>Bad gateway</html>"}, std::nullopt, false},
      {{200, {}, "{\"a\":\"\xff\"}"}, std::nullopt, false},
      {{.body = R"({"a":"long enough to cut"})", .mode = Reply::Mode::CutBody}, std::nullopt, true},
      {{.mode = Reply::Mode::DropConnection}, std::nullopt, true},
  };
  for (const auto& row : rows) {
    backend.answer([&](const test::Request&) { return row.reply; });
    Outcome outcome;
    transport().postImage("p", Data(std::string("x")), "photo", std::nullopt, into(outcome));
    EXPECT_EQ(outcome.calls, 0) << "never before the call has returned";
    await(outcome);
    EXPECT_EQ(outcome.json ? std::optional(outcome.json->description()) : std::nullopt, row.json)
        << row.reply.body;
    EXPECT_EQ(outcome.error.has_value(), row.error) << row.reply.body;
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

TEST_F(TransportTest, GoesOnWhileAnAnswerDoesNotCome) {
  backend.hold();
  Outcome waiting, other;
  transport().get("never", into(waiting));
  EXPECT_TRUE(time.waitUntil([&] { return backend.requests().size() == 1; }));
  time.advance(9000); // the time-out is longer, and does not run on this clock
  Backend second;
  second.answer("{}");
  transport().serverURL = second.url();
  transport().get("now", into(other));
  await(other);
  EXPECT_EQ(waiting.calls, 0);
  backend.release();
  await(waiting);
  EXPECT_TRUE(waiting.json);
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
