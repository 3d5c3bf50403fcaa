#include "tests/sandbox/ServerFixture.h"

#include <gmock/gmock.h>

namespace zuvi::sandbox::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

class Operations : public ServerFixture {
protected:
  void SetUp() override { start(); }
};

TEST_F(Operations, MerchantByClientId) {
  const auto answer = ask("GET", "/api/v1/merchants/me", {"Content-Type: application/json"});
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(json(answer)["configurations"][0]["documents"]["required"][0], "national-id");

  for (const char* header : {"Accept: */*", "Authorization: demo", "Authorization: bearer demo",
                             "Authorization: Bearer  demo", "Authorization: Bearer nobody"}) {
    const auto refused = client_.ask("GET", server_->address() + "/api/v1/merchants/me", {header});
    EXPECT_EQ(refused.status, 401) << header;
  }
}

TEST_F(Operations, IdentityWithFilmFacesAndMetadata) {
  SampleForm film = SampleForm::ofFilm();
  film.fields = {{"metadata[b]", "<two>"}, {"metadata[a]", ""}};
  const auto created = upload("POST", "/v1/identities", film);
  EXPECT_EQ(created.status, 201);
  const auto id = idOf(created);

  const auto appended = upload("PUT", "/v1/identities/" + id, SampleForm::ofPhoto());
  EXPECT_EQ(appended.status, 200);
  SampleForm face = SampleForm::ofPhoto();
  face.fields = {{"metadata[light]", "dim"}};
  const auto faceId = idOf(upload("POST", "/v1/identities/" + id + "/faces", face));

  const auto arrivals = server_->arrivals();
  ASSERT_EQ(arrivals->identities.size(), 1U);
  const Identity& identity = arrivals->identities[0];
  EXPECT_THAT(identity.metadata, ElementsAre(Pair("b", "<two>"), Pair("a", "")));
  EXPECT_EQ(*server_->file(identity.film), test::film);
  ASSERT_EQ(identity.faces.size(), 2U);
  EXPECT_EQ(identity.faces[1].id, faceId);
  EXPECT_EQ(*server_->file(identity.faces[1].photo), jpeg);
}

TEST_F(Operations, TwoSidedDocumentFromFrontToVerified) {
  const auto id = newDocument(newIdentity(), "driving-license");
  EXPECT_EQ(patch(id, R"({"fields":[]})").status, 400) << "nothing was read yet";

  const auto back = addBack(id, "driving-license");
  EXPECT_EQ(back.status, 200);
  const Json fields = json(back)["fields"];
  ASSERT_GT(fields.size(), 2U);

  const std::string fieldId = fields[0]["id"];
  const auto verified = patch(id, R"({"fields":[{"id":")" + fieldId + R"(","value":"Zo\u00eb"}]})");
  EXPECT_EQ(verified.status, 200);
  const auto arrivals = server_->arrivals();
  const Document& document = arrivals->identities.at(0).documents.at(0);
  EXPECT_EQ(document.fields.at(0).value, "Zo\xc3\xab");
  EXPECT_TRUE(document.fields.at(0).verified);
  EXPECT_FALSE(document.fields.at(1).verified);
}

TEST_F(Operations, ResourcesOfOthersAreUnknown) {
  const auto identity = newIdentity();
  const auto document = newDocument(identity, "passport");
  const auto expectUnknown = [&](const std::string& identityId, const std::string& documentId) {
    EXPECT_EQ(upload("PUT", "/v1/identities/" + identityId, SampleForm::ofPhoto()).status, 404);
    EXPECT_EQ(
        upload("POST", "/v1/identities/" + identityId + "/faces", SampleForm::ofPhoto()).status,
        404);
    EXPECT_EQ(addBack(documentId, "passport").status, 404);
  };
  expectUnknown("%27%20OR%201=1", "%00");
  clientId_ = "spanish";
  expectUnknown(identity, document);
}

TEST_F(Operations, UploadsAreCheckedToTheLetter) {
  const auto identity = newIdentity();
  const auto fault = [&](const std::string& method, const std::string& path,
                         const SampleForm& form) {
    const auto answer = upload(method, path, form);
    EXPECT_EQ(answer.status, 400);
    return messageOf(answer);
  };
  const auto filmFault = [&](auto change) {
    SampleForm form = SampleForm::ofFilm();
    change(form);
    return fault("POST", "/v1/identities", form);
  };
  EXPECT_THAT(filmFault([](auto& form) { form.fileField = "photo"; }), HasSubstr("\"video\""));
  EXPECT_THAT(filmFault([](auto& form) { form.fileName = "Liveness.mov"; }), HasSubstr("named"));
  EXPECT_THAT(filmFault([](auto& form) { form.type = "video/mp4"; }), HasSubstr("Content-Type"));
  EXPECT_THAT(filmFault([](auto& form) { form.bytes = "ftyp"; }), HasSubstr("QuickTime"));
  EXPECT_THAT(filmFault([](auto& form) { form.bytes.clear(); }), HasSubstr("QuickTime"));
  EXPECT_THAT(filmFault([](auto& form) { form.fields = {{"city", "x"}}; }), HasSubstr("metadata"));

  const auto documentFault = [&](auto change) {
    SampleForm form = SampleForm::ofDocument("passport", "front");
    change(form);
    return fault("POST", "/v1/identities/" + identity + "/documents", form);
  };
  EXPECT_THAT(documentFault([](auto& form) { form.fields[0].second = "Passport"; }),
              HasSubstr("no known document"));
  EXPECT_THAT(documentFault([](auto& form) { form.fields[1].second = "back"; }),
              HasSubstr("must be front"));
  EXPECT_THAT(documentFault([](auto& form) { form.fields.pop_back(); }), HasSubstr("lacks"));
  EXPECT_THAT(documentFault([](auto& form) { form.fields.emplace_back("metadata[a]", "b"); }),
              HasSubstr("not known"));
  EXPECT_THAT(documentFault([](auto& form) { form.bytes = film; }), HasSubstr("JPEG"));

  const auto chunked =
      ask("POST", "/v1/identities", {"Content-Type: " + formType, "Transfer-Encoding: chunked"},
          SampleForm::ofFilm().body());
  EXPECT_THAT(messageOf(chunked), HasSubstr("Content-Length"));
  EXPECT_EQ(server_->arrivals()->identities.size(), 1U) << "nothing of all that was stored";
}

TEST_F(Operations, VerifyingIsCheckedToo) {
  const auto id = newDocument(newIdentity(), "passport");
  for (const char* body :
       {"", "[]", "{}", R"({"fields":{}})", R"({"fields":[],"more":1})",
        R"({"fields":["fullName"]})", R"({"fields":[{"id":"fullName"}]})",
        R"({"fields":[{"id":"fullName","value":null}]})",
        R"({"fields":[{"id":"fullName","value":"x","label":"Full name"}]})",
        R"({"fields":[{"id":"fullName","value":"x"},{"id":"fullname","value":"x"}]})"})
    EXPECT_EQ(patch(id, body).status, 400) << body;
  EXPECT_FALSE(server_->arrivals()->identities[0].documents[0].fields[0].verified);
}

TEST_F(Operations, WrongPathMethodOrHost) {
  EXPECT_EQ(ask("GET", "/v1/merchants/me").status, 404);
  EXPECT_EQ(ask("POST", "/v1/identities/").status, 404);
  const auto method = ask("GET", "/v1/documents/x");
  EXPECT_EQ(method.status, 405);
  EXPECT_EQ(method.headers.at("allow"), "PUT, PATCH");
  EXPECT_EQ(ask("GET", "/arrivals.json", {"Host: example.org"}).status, 403);
  EXPECT_EQ(ask("GET", "/arrivals.json", {"Host: localhost:1"}).status, 200);
}

TEST_F(Operations, BodiesHaveALimit) {
  ServerOptions options;
  options.bodyLimit = 1000;
  start(std::move(options));
  SampleForm form = SampleForm::ofFilm();
  form.bytes += std::string(5000, 'x');
  EXPECT_EQ(upload("POST", "/v1/identities", form).status, 413);
  EXPECT_EQ(upload("POST", "/v1/identities", SampleForm::ofFilm()).status, 201);
}

TEST_F(Operations, LogTellsNothingPersonal) {
  std::vector<std::string> lines;
  ServerOptions options;
  options.log = [&](const std::string& line) { lines.push_back(line); };
  start(std::move(options));
  SampleForm form = SampleForm::ofFilm();
  form.fields = {{"metadata[name]", "Ines"}};
  upload("POST", "/v1/identities", form);
  ask("GET\x1b[31m", "/nothing?name=Ines");
  server_->stop();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_THAT(lines[0], testing::MatchesRegex("POST /v1/identities [0-9]+ bytes, 201, [0-9]+ ms"));
  EXPECT_THAT(lines[1], testing::StartsWith("GET?[31m /nothing 0 bytes, 404, "));
}

} // namespace
} // namespace zuvi::sandbox::test
