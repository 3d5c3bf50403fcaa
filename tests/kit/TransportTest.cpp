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
  static std::string boundaryOf(const test::Request& request) {
    static const std::regex form("multipart/form-data; boundary="
                                 "(Boundary-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12})");
    std::smatch match;
    const std::string type = request.headers.at("content-type");
    return std::regex_match(type, match, form) ? match[1].str() : "no boundary in " + type;
  }
};

TEST_F(TransportTest, BuildsMultipartBodiesByteByByte) {
  const std::string bytes("a\r\n--b\0\xff\xd8 end", 13);
  const Value::Dictionary fields{{"flag", true},
                                 {"metadata[a \"b\"]", "line\r\nend \"quoted\" é"},
                                 {"number", 3},
                                 {"real", 2.5},
                                 {"tree", Value::Dictionary{{"k", Value::List{1, "v"}}}}};
  std::set<std::string> boundaries;
  // In a body, @ stands for the line of the boundary.
  const auto expectSent = [&](std::string body) {
    const auto request = backend.requests().back();
    EXPECT_EQ(request.method, "POST");
    const std::string line = "--" + boundaryOf(request);
    for (auto at = body.find('@'); at != std::string::npos; at = body.find('@'))
      body.replace(at, 1, line);
    EXPECT_EQ(request.body, body);
    boundaries.insert(line);
  };
  const std::string disposition = "@\r\nContent-Disposition: form-data; name=\"";
  const auto text = [&](const std::string& key, const std::string& value) {
    return disposition + key + "\"\r\n\r\n" + value + "\r\n";
  };
  const auto file = [&](const std::string& name, const std::string& type) {
    return disposition + "picture\"; filename=\"" + name + "\"\r\nContent-Type: " + type +
           "\r\n\r\n" + bytes + "\r\n@--\r\n";
  };
  Outcome image, video;
  transport().postImage("p", Data(bytes), "picture", fields, into(image));
  await(image);
  expectSent(text("flag", "true") + text("metadata[a \"b\"]", "line\r\nend \"quoted\" é") +
             text("number", "3") + text("real", "2.5") + text("tree", R"(["k": [1, "v"]])") +
             file("user-profile.jpg", "image/jpeg"));
  transport().postVideo("p", Data(bytes), "picture", Value::Dictionary{}, into(video));
  await(video);
  expectSent(file("liveness.mov", "video/quicktime"));
  EXPECT_EQ(boundaries.size(), 2U) << "each request has a boundary of its own";
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
    EXPECT_FALSE(request.header("authorization")) << "nobody has registered";
    EXPECT_EQ(request.body, row.body);
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
