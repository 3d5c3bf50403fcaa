// The operations of the back end: what goes out, and what comes of every answer.

#include "sandbox/core/Server.h"
#include "testing/backend/Samples.h"
#include "testing/kit/KitTest.h"

namespace zuvi {
namespace {

const Data photo{sandbox::test::jpeg}, film{sandbox::test::film};

/// An operation, whose outcome is told in words.
struct Operation {
  std::string name;
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
    EXPECT_TRUE(time.waitUntil([&] { return !outcomes.empty(); })) << operation.name;
    time.settle();
    EXPECT_EQ(outcomes.size(), 1U) << operation.name;
    return outcomes.empty() ? "none" : outcomes[0];
  }

  const std::vector<Operation> forIds{
      {"film", [](const auto& done) { manager().createNewIdentity(film, id(done)); }},
      {"face", [](const auto& done) { manager().appendFaceToIdentity("i", photo, id(done)); }},
      {"new face", [](const auto& done) { manager().submitNewFace("i", photo, id(done)); }},
      {"document",
       [](const auto& done) { manager().submitDocument("i", "passport", photo, id(done)); }},
  };
  const Operation upload{"back", [](const auto& done) {
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
  const Operation verify{"fields", [](const auto& done) {
                           manager().verifyDocument(
                               "d-1", {}, [done](bool taken) { done(taken ? "yes" : "no"); });
                         }};
  const Operation merchant{"merchant", [](const auto& done) {
                             manager().getMerchant([done](const auto& answer) {
                               done(answer ? words(answer->displayName) : "none");
                             });
                           }};
};

/// The sandbox takes nothing that is not framed and named to the letter.
TEST_F(OperationsTest, SendWhatTheBackEndTakes) {
  sandbox::ServerOptions options;
  options.dataFolder = folder.path("sandbox");
  const auto server = std::move(*sandbox::Server::start(std::move(options)));
  useServer(server->address() + "/");
  manager().authorization = "Bearer demo";
  const auto idOf = [&](const std::function<void(ZVKYCManager::IdCompletion)>& call) {
    const auto outcome = outcomeOf({"", [&](const auto& done) { call(id(done)); }});
    EXPECT_TRUE(outcome.ends_with("/-")) << outcome;
    return outcome.substr(0, outcome.size() - 2);
  };
  const auto identity = idOf([](auto done) { manager().createNewIdentity(film, done); });
  idOf([&](auto done) { manager().appendFaceToIdentity(identity, photo, done); });
  const auto face = idOf([&](auto done) { manager().submitNewFace(identity, photo, done); });
  const auto document =
      idOf([&](auto done) { manager().submitDocument(identity, "national-id", photo, done); });
  std::optional<std::vector<ZVOCRResult>> fields;
  manager().uploadNewPhoto(document, "national-id", photo,
                           [&](const auto& results, const auto&) { fields = results; });
  ASSERT_TRUE(time.waitUntil([&] { return fields.has_value(); }));
  ASSERT_FALSE(fields->empty());
  fields->erase(fields->begin() + 1, fields->end());
  fields->front().value = "new \"é\"";
  bool verified = false;
  manager().verifyDocument(document, *fields, [&](bool taken) { verified = taken; });
  EXPECT_TRUE(time.waitUntil([&] { return verified; }));

  const sandbox::Identity arrived = server->arrivals()->identities.at(0);
  const sandbox::Metadata metadata{{"a", "one"}, {"b", "[2]"}};
  EXPECT_EQ(arrived.metadata, metadata);
  ASSERT_EQ(arrived.faces.size(), 2U);
  EXPECT_EQ(arrived.faces[1].id, face);
  EXPECT_EQ(arrived.faces[1].metadata, metadata);
  EXPECT_EQ(arrived.documents.at(0).sides.size(), 2U);
  EXPECT_TRUE(arrived.documents[0].fields.at(0).verified);
  EXPECT_EQ(arrived.documents[0].fields.at(0).value, fields->front().value);
  EXPECT_FALSE(arrived.documents[0].fields.at(1).verified);
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
      {R"({"id":"x\r\nX: y","message":"m"})", "-/m", "-/m", "no", "-"}, // fits into no address
      {R"({"id":"a b"})", "-/-", "-/-", "no", "-"},
      {R"({"id":"\u0000"})", "-/-", "-/-", "no", "-"},
      {R"({"fields":[]})", "-/-", "/-", "yes", "-"},
      {R"({"fields":[],"message":"m","id":"x"})", "x/m", "/-", "yes", "-"},
      {R"({"fields":[{"id":"X","required":true},{"id":"y"},{"required":true}]})", "-/-",
       "d_x,d_,/-", "yes", "-"},
      {R"({"fields":[{"id":"X","required":true}],"metadata":{"cardType":"B"}})", "-/-", "c_x,/-",
       "yes", "-"},
      {R"({"fields":[{"required":true}],"metadata":["C"]})", "-/-", "d_,/-", "yes", "-"},
      {R"({"fields":[{"required":1},{"required":"true"}]})", "-/-", "/-", "yes", "-"},
      {R"({"fields":[{},7],"message":"m"})", "-/m", "-/m", "no", "-"},
      {R"({"fields":{"id":"x"},"message":"m"})", "-/m", "-/m", "no", "-"},
      {R"([{"id":"x","message":"m","fields":[]}])", "-/-", "-/-", "no", "none"},
      {"null", "-/-", "-/-", "no", "none"},
      {"{\"id\":\"\xff\"}", "-/-", "-/-", "no", "none"},
      {"", "-/-", "-/-", "no", "none"},
      {R"({"id":"x","fields":[])", "-/-", "-/-", "no", "none"},
  };
  int status = 200;
  for (const auto& row : rows) {
    backend.answer(row.body, status);
    status = status == 200 ? 422 : 200; // it is never read
    for (const Operation& operation : forIds)
      EXPECT_EQ(outcomeOf(operation), row.id) << operation.name << " " << row.body;
    EXPECT_EQ(outcomeOf(upload), row.photo) << row.body;
    EXPECT_EQ(outcomeOf(verify), row.verify) << row.body;
    EXPECT_EQ(outcomeOf(merchant), row.merchant) << row.body;
  }
  for (const auto mode : {test::Reply::Mode::DropConnection, test::Reply::Mode::CutBody}) {
    backend.answer([mode](const auto&) { return test::Reply{.body = "{}      ", .mode = mode}; });
    EXPECT_EQ(outcomeOf(forIds[0]), "-/-");
    EXPECT_EQ(outcomeOf(upload), "-/-");
    EXPECT_EQ(outcomeOf(verify), "no");
    EXPECT_EQ(outcomeOf(merchant), "none") << "what came before it broke off is none";
  }
  ZVKYC::instance().metadata = Value::Dictionary{{"a \"b\"", "c"}};
  outcomeOf(forIds[0]);
  const auto came = backend.requests().size();
  EXPECT_THAT(backend.requests().back().body,
              testing::HasSubstr("; name=\"metadata[a \"b\"]\"\r\n\r\nc\r\n"));
  EXPECT_EQ(outcomeOf({"no address",
                       [](const auto& done) {
                         manager().submitDocument("a b", "passport", photo, id(done));
                       }}),
            "-/-");
  EXPECT_EQ(backend.requests().size(), came);
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
  const std::pair<std::string, std::string> rows[] = {
      {"{}", standard},
      {R"({"name":"N","photo":"p","configurations":[]})", "N p #2196F3 en [ national-id ] [ ]"},
      {R"({"configurations":[{"color":"red"},7]})", standard}, // not a list of objects
      {R"({"configurations":[{},{"color":"red","documents":{}}]})", standard}, // only the first
      {configured(R"("color":"Green","language":"pt-BR")"), standard},
      {configured(R"("color":1,"language":true,"documents":[])"), standard},
      {configured(R"("color":"green","language":"pt")"), "- - #00B257 pt [ national-id ] [ ]"},
      {configured(R"("color":"orange","language":"FR")"), "- - #F2994A en [ national-id ] [ ]"},
      {listing(""), noDocuments},
      {listing(R"("required":"passport","optional":{})"), noDocuments},
      {listing(R"("required":["passport",7])"), noDocuments}, // not a list of strings
      {listing(R"("required":["passport","x","passport"],"optional":["Passport"])"),
       "- - #2196F3 en [ passport passport ] [ ]"},
      {listing(R"("required":["driving-license","proof-of-residency"],)"
               R"("optional":["national-id","driving-license"])"),
       "- - #2196F3 en [ driving-license proof-of-residency ] [ national-id driving-license ]"},
  };
  for (const auto& [json, expected] : rows)
    EXPECT_EQ(inWords(ZVKYCMerchant(dictionary(json))), expected) << json;
}

} // namespace
} // namespace zuvi
