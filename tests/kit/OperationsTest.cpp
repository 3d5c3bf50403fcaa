// The operations of the back end: what goes out, and what comes of every answer.

#include "tests/kit/KitTest.h"

namespace zuvi {
namespace {

const Data photo{std::string("\xff\xd8 photo")};

/// An operation, whose outcome is told in words, and what must go out for it.
struct Operation {
  std::string request;
  std::vector<std::string> parts; ///< of the form, in any order
  std::function<void(std::function<void(std::string)>)> call;
};

std::string words(const std::optional<std::string>& text) {
  return text.value_or("-");
}

class OperationsTest : public KitTest {
protected:
  OperationsTest() {
    ZVKYC::instance().metadata = Value::Dictionary{{"a", "one"}, {"b", Value::List{2}}};
    manager().authorization = "Bearer me";
  }

  static ZVKYCManager::IdCompletion id(const std::function<void(std::string)>& done) {
    return [done](const auto& id, const auto& message) { done(words(id) + "/" + words(message)); };
  }

  std::string outcomeOf(const Operation& operation) {
    std::vector<std::string> outcomes;
    operation.call([&](const std::string& outcome) {
      EXPECT_TRUE(DispatchQueue::main().isCurrent());
      outcomes.push_back(outcome);
    });
    EXPECT_TRUE(time.waitUntil([&] { return !outcomes.empty(); })) << operation.request;
    time.settle();
    EXPECT_EQ(outcomes.size(), 1U) << operation.request;
    return outcomes.empty() ? "none" : outcomes[0];
  }

  static std::string file(const std::string& field, const std::string& name) {
    return "\"" + field + "\"; filename=\"" + name + "\"\r\n";
  }
  const std::string face = file("photo", "user-profile.jpg");
  const std::string picture = file("picture", "user-profile.jpg");
  const std::string a = "\"metadata[a]\"\r\n\r\none\r\n", b = "\"metadata[b]\"\r\n\r\n[2]\r\n";
  const std::vector<Operation> forIds{
      {"POST /v1/identities",
       {a, b, file("video", "liveness.mov")},
       [](const auto& done) { manager().createNewIdentity(photo, id(done)); }},
      {"PUT /v1/identities/i-1",
       {face},
       [](const auto& done) { manager().appendFaceToIdentity("i-1", photo, id(done)); }},
      {"POST /v1/identities/i-1/faces",
       {a, b, face},
       [](const auto& done) { manager().submitNewFace("i-1", photo, id(done)); }},
      {"POST /v1/identities/i-1/documents",
       {"\"side\"\r\n\r\nfront\r\n", "\"type\"\r\n\r\npassport\r\n", picture},
       [](const auto& done) { manager().submitDocument("i-1", "passport", photo, id(done)); }},
  };
  const Operation upload{"PUT /v1/documents/d-1",
                         {"\"side\"\r\n\r\nback\r\n", "\"type\"\r\n\r\nnational-id\r\n", picture},
                         [](const auto& done) {
                           manager().uploadNewPhoto(
                               "d-1", "national-id", photo,
                               [done](const auto& results, const auto& message) {
                                 std::string text = results ? "" : "-";
                                 if (results)
                                   for (const ZVOCRResult& result : *results)
                                     text += result.imageName() + ",";
                                 done(text + "/" + words(message));
                               });
                         }};
  const Operation verify{"PATCH /v1/documents/d-1", {}, [](const auto& done) {
                           manager().verifyDocument(
                               "d-1", {}, [done](bool taken) { done(taken ? "yes" : "no"); });
                         }};
  const Operation merchant{"GET /api/v1/merchants/me", {}, [](const auto& done) {
                             manager().getMerchant([done](const auto& answer) {
                               done(answer ? words(answer->displayName) : "none");
                             });
                           }};
};

TEST_F(OperationsTest, SendWhatTheBackEndExpects) {
  backend.answer("{}");
  std::vector<Operation> all = forIds;
  all.insert(all.end(), {upload, verify, merchant});
  for (const Operation& operation : all) {
    outcomeOf(operation);
    const auto request = backend.requests().back();
    EXPECT_EQ(request.method + " " + request.path, operation.request);
    EXPECT_EQ(request.headers.at("authorization"), "Bearer me");
    std::size_t count = 0;
    for (auto at = request.body.find("; name="); at != std::string::npos;
         at = request.body.find("; name=", at + 1))
      count++;
    EXPECT_EQ(count, operation.parts.size()) << request.body;
    for (const std::string& part : operation.parts)
      EXPECT_NE(request.body.find("form-data; name=" + part), std::string::npos) << part;
  }
  ZVKYC::instance().metadata = std::nullopt;
  outcomeOf(forIds[0]);
  EXPECT_EQ(backend.requests().back().body.find("metadata"), std::string::npos);
}

TEST_F(OperationsTest, ReadEveryShapeOfAnswer) {
  const struct {
    std::string body, id, photo, verify, merchant;
  } rows[] = {
      {"{}", "-/-", "-/-", "no", "-"},
      {R"({"id":"x","name":"N"})", "x/-", "-/-", "no", "N"},
      {R"({"message":"Too dark é"})", "-/Too dark é", "-/Too dark é", "no", "-"},
      {R"({"id":"","message":""})", "/", "-/", "no", "-"},
      {R"({"id":7,"message":["m"],"name":{}})", "-/-", "-/-", "no", "-"},
      {R"({"id":{"id":"x"},"message":true})", "-/-", "-/-", "no", "-"},
      {R"({"fields":[]})", "-/-", "/-", "yes", "-"},
      {R"({"fields":[],"message":"m","id":"x"})", "x/m", "/-", "yes", "-"},
      {R"({"fields":[{"id":"X","required":true},{"id":"y"},{"required":true}]})", "-/-",
       "d_x,d_,/-", "yes", "-"},
      {R"({"fields":[{"id":"X","required":true}],"metadata":{"cardType":"B"}})", "-/-", "c_x,/-",
       "yes", "-"},
      {R"({"fields":[{"id":"X","required":true}],"metadata":{"cardType":"Zz"}})", "-/-", "zz_x,/-",
       "yes", "-"},
      {R"({"fields":[{"required":true}],"metadata":["C"]})", "-/-", "d_,/-", "yes", "-"},
      {R"({"fields":[{"required":1},{"required":"true"}]})", "-/-", "/-", "yes", "-"},
      {R"({"fields":[{},7],"message":"m"})", "-/m", "-/m", "no", "-"},
      {R"({"fields":{"id":"x"},"message":"m"})", "-/m", "-/m", "no", "-"},
      {R"([{"id":"x","message":"m","fields":[]}])", "-/-", "-/-", "no", "none"},
      {R"("id")", "-/-", "-/-", "no", "none"},
      {"", "-/-", "-/-", "no", "none"},
      {"<html></html>", "-/-", "-/-", "no", "none"},
      {R"({"id":"x","fields":[])", "-/-", "-/-", "no", "none"},
  };
  int status = 200;
  for (const auto& row : rows) {
    backend.answer(row.body, status);
    status = status == 200 ? 422 : 200; // it is never read
    for (const Operation& operation : forIds)
      EXPECT_EQ(outcomeOf(operation), row.id) << operation.request << " " << row.body;
    EXPECT_EQ(outcomeOf(upload), row.photo) << row.body;
    EXPECT_EQ(outcomeOf(verify), row.verify) << row.body;
    EXPECT_EQ(outcomeOf(merchant), row.merchant) << row.body;
  }
  backend.answer(
      [](const auto&) { return test::Reply{.mode = test::Reply::Mode::DropConnection}; });
  EXPECT_EQ(outcomeOf(forIds[0]), "-/-");
  EXPECT_EQ(outcomeOf(upload), "-/-");
  EXPECT_EQ(outcomeOf(verify), "no");
  EXPECT_EQ(outcomeOf(merchant), "none");
}

TEST_F(OperationsTest, SendTheFieldsBackInTheirOrder) {
  backend.answer("{}");
  std::vector<ZVOCRResult> results;
  results.emplace_back(Value::Dictionary{{"id", "B"}, {"value", "old"}, {"label", "L"}}, "D");
  results.emplace_back(Value::Dictionary{}, "D");
  results[0].value = "new \"é\"";
  int calls = 0;
  manager().verifyDocument("d", results, [&](bool) { calls++; });
  EXPECT_TRUE(time.waitUntil([&] { return calls == 1; }));
  EXPECT_EQ(backend.requests().back().body,
            R"({"fields":[{"id":"B","value":"new \"é\""},{"id":"","value":""}]})");
}

std::string inWords(const ZVKYCMerchant& merchant) {
  std::string text = merchant.displayName.value_or("-") + " " + merchant.photoUrl.value_or("-") +
                     " " + textFromColor(merchant.color) + " " + rawValue(merchant.currentLanguage);
  for (const auto* documents : {&merchant.requiredDocuments, &merchant.optionalDocuments}) {
    text += " [";
    for (const ZVDocument document : *documents)
      text += " " + rawValue(document);
    text += " ]";
  }
  return text;
}

TEST_F(OperationsTest, ReadsMerchantsFieldByField) {
  const std::string standard = "- - #2196F3 en [ national-id ] [ ]";
  const std::string noDocuments = "- - #2196F3 en [ ] [ ]";
  const auto configured = [](const std::string& inside) {
    return R"({"configurations":[{)" + inside + "}]}";
  };
  const auto listing = [&](const std::string& inside) {
    return configured(R"("documents":{)" + inside + "}");
  };
  const struct {
    std::string json, expected;
  } rows[] = {
      {"{}", standard},
      {R"({"name":"N","photo":"p"})", "N p #2196F3 en [ national-id ] [ ]"},
      {R"({"name":"N","configurations":[]})", "N - #2196F3 en [ national-id ] [ ]"},
      {R"({"configurations":[{"color":"red"},7]})", standard}, // not a list of objects
      {R"({"configurations":[{},{"color":"red","documents":{}}]})", standard}, // only the first
      {configured(R"("color":"Green","language":"pt-BR")"), standard},
      {configured(R"("color":1,"language":true,"documents":[])"), standard},
      {configured(R"("color":"green","language":"pt")"), "- - #00B257 pt [ national-id ] [ ]"},
      {configured(R"("color":"orange","language":"FR")"), "- - #F2994A en [ national-id ] [ ]"},
      {configured(R"("color":"yellow","language":"en")"), "- - #FFBD00 en [ national-id ] [ ]"},
      {listing(""), noDocuments},
      {listing(R"("required":"passport","optional":{})"), noDocuments},
      {listing(R"("required":["passport",7])"), noDocuments}, // not a list of strings
      {listing(R"("required":["passport","x","passport"],"optional":["Passport"])"),
       "- - #2196F3 en [ passport passport ] [ ]"},
      {listing(R"("required":["driving-license","proof-of-residency"],)"
               R"("optional":["national-id","driving-license"])"),
       "- - #2196F3 en [ driving-license proof-of-residency ] [ national-id driving-license ]"},
  };
  EXPECT_EQ(inWords(ZVKYCMerchant()), standard);
  for (const auto& row : rows)
    EXPECT_EQ(inWords(ZVKYCMerchant(dictionary(row.json))), row.expected) << row.json;
}

} // namespace
} // namespace zuvi
