#include "testing/backend/ServerFixture.h"
#include "testing/support/ChildProcess.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace zuvi::sandbox::test {
namespace {

class Operations : public ServerFixture {
protected:
  void SetUp() override { start(); }
  int connected() const {
    const sockaddr_in to{AF_INET, htons(server_->port()), {htonl(INADDR_LOOPBACK)}, {}};
    const int made = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const timeval patience{5, 0};
    ::setsockopt(made, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    EXPECT_EQ(::connect(made, reinterpret_cast<const sockaddr*>(&to), sizeof to), 0);
    return made;
  }
};

TEST_F(Operations, OnlyClientsAndThePagesOfThisServerMayAsk) {
  const std::string body(100'000, 'x');
  for (const char* authorization : {"", "demo", "bearer demo", "Bearer  demo", "Bearer nobody"})
    EXPECT_EQ(ask("POST", "/v1/identities", {{"Authorization", authorization}}, body).status, 401)
        << authorization;
  // A long body is not waited for.
  const int socket = connected();
  const std::string head = "POST /v1/identities HTTP/1.1\r\nHost: localhost\r\n"
                           "Content-Length: 100000000\r\n\r\n";
  EXPECT_EQ(::write(socket, head.data(), head.size()), std::ssize(head));
  std::string status(12, ' ');
  EXPECT_EQ(::recv(socket, status.data(), status.size(), MSG_WAITALL), std::ssize(status));
  EXPECT_EQ(status, "HTTP/1.1 401");
  ::close(socket);
  const std::string own = server_->address(), port = own.substr(own.rfind(':'));
  for (const char* path : {"/", "/arrivals.json", "/api/v1/merchants/me", "/chat/news", "/none"})
    for (const auto& origin : {std::string("null"), std::string("https://web.example"),
                               "http://localhost" + port, own + "0", std::string()})
      EXPECT_EQ(ask("GET", path, {{"Origin", origin}}).status, 403) << path << origin;
  EXPECT_EQ(ask("GET", "/arrivals.json", {{"Origin", own}}).status, 200);
}

TEST_F(Operations, LongBodiesWaitOnTheDiskAndHaveALimit) {
  ServerOptions options;
  options.bodyLimit = 3'500'000;
  start(std::move(options));
  SampleForm form = SampleForm::ofFilm();
  form.bytes.resize(4'000'000, 'x');
  EXPECT_EQ(upload("POST", "/v1/identities", form).status, 413);
  form.bytes.resize(3'000'000);
  upload("POST", "/v1/identities", form);
  const auto arrived = server_->arrivals()->identities;
  ASSERT_EQ(arrived.size(), 1U);
  EXPECT_TRUE(*server_->file(arrived[0].film) == form.bytes);
  EXPECT_EQ(upload("POST", "/v1/identities", SampleForm::ofFilm()).status, 201);
  const std::filesystem::directory_iterator files(folder_.path("data/files"));
  EXPECT_EQ(std::distance(begin(files), end(files)), 2) << "nothing else is left there";
}

TEST_F(Operations, OnlySoManyConnectAtATime) {
  std::vector<int> idle;
  for (int i = 0; i < 64; i++)
    idle.push_back(connected());
  timeout_ = 0.3;
  EXPECT_NE(ask("GET", "/").error, 0);
  for (const int socket : idle)
    ::close(socket);
  timeout_ = 20;
  // The server takes a moment to see that they are closed.
  EXPECT_TRUE(zuvi::test::comesToHold([&] { return ask("GET", "/").status == 200; }));
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
  using Change = void (*)(SampleForm&);
  const auto refuse = [&](const std::string& path, const SampleForm& good,
                          const std::vector<Change>& changes) {
    for (std::size_t i = 0; i < changes.size(); ++i) {
      SampleForm form = good;
      changes[i](form);
      EXPECT_EQ(upload("POST", path, form).status, 400) << path << " with change " << i;
    }
  };
  refuse("/v1/identities", SampleForm::ofFilm(),
         {[](SampleForm& form) { form.fileField = "photo"; },
          [](SampleForm& form) { form.fileName = "Liveness.mov"; },
          [](SampleForm& form) { form.type = "video/mp4"; },
          [](SampleForm& form) { form.bytes = "ftyp"; },
          [](SampleForm& form) {
            form.fields = {{"city", "x"}};
          }});
  refuse("/v1/identities/" + identity + "/documents", SampleForm::ofDocument("passport", "front"),
         {[](SampleForm& form) { form.fields[0].second = "Passport"; },
          [](SampleForm& form) { form.fields[1].second = "back"; },
          [](SampleForm& form) { form.fields.pop_back(); },
          [](SampleForm& form) { form.fields.emplace_back("metadata[a]", "b"); },
          [](SampleForm& form) { form.bytes = film; }});
  const auto arrivals = server_->arrivals();
  ASSERT_EQ(arrivals->identities.size(), 1U) << "nothing of all that was stored";
  EXPECT_TRUE(arrivals->identities[0].documents.empty());
}

TEST_F(Operations, VerifyingIsCheckedToo) {
  const auto unread = newDocument(newIdentity(), "driving-license"); // until the back is there
  EXPECT_EQ(patch(unread, R"({"fields":[]})").status, 400);
  const auto id = newDocument(newIdentity(), "passport");
  for (const char* body :
       {"", "[]", "{}", R"({"fields":{}})", R"({"fields":[],"more":1})",
        R"({"fields":["fullName"]})", R"({"fields":[{"id":"fullName"}]})",
        R"({"fields":[{"id":"fullName","value":null}]})",
        R"({"fields":[{"id":"fullName","value":"x","label":"Full name"}]})",
        R"({"fields":[{"id":"fullName","value":"x"},{"id":"fullname","value":"x"}]})"})
    EXPECT_EQ(patch(id, body).status, 400) << body;
  EXPECT_EQ(patch(id, std::string(100000, '[')).status, 400);
  EXPECT_FALSE(server_->arrivals()->identities[1].documents[0].fields[0].verified);
}

TEST_F(Operations, TheChatRefusesWhatIsNoMessage) {
  const auto post = [&](const std::string& path, const Json& body) {
    return ask("POST", path, {}, jsonText(body));
  };
  post("/chat/enter", {{"visitor", "v-1"}});
  const Json bodies[] = {"text",
                         {{"visitor", "v-1"}},
                         {{"visitor", "v-1"}, {"text", 1}},
                         {{"visitor", "v-1"}, {"text", ""}},
                         {{"visitor", "v-1"}, {"text", std::string(30'000, 'x')}},
                         {{"visitor", "nobody"}, {"text", "x"}}};
  for (const Json& body : bodies)
    EXPECT_GE(post("/chat/say", body).status, 400) << jsonText(body).substr(0, 40);
  for (const char* id : {"", "a/b", "<script>"})
    EXPECT_EQ(post("/chat/enter", {{"visitor", id}}).status, 400) << id;
  EXPECT_EQ(json(ask("GET", "/chat/news?visitor=v-1&after=0"))["lines"].size(), 1U);
  EXPECT_EQ(ask("GET", "/chat/news?visitor=v-1&after=x").status, 400);
}

TEST_F(Operations, NeverEndWithTheClientOrTheServer) {
  start({"merchant:*:never"});
  timeout_ = 0.1;
  EXPECT_EQ(ask("GET", "/api/v1/merchants/me").error, NSURLErrorTimedOut);

  auto request = to(server_->address() + "/api/v1/merchants/me");
  request.allHTTPHeaderFields = {{"Authorization", "Bearer demo"}};
  const auto waiting = SessionFixture::start(request);
  EXPECT_FALSE(waiting.within(std::chrono::milliseconds(150)));
  server_->stop();
  EXPECT_NE(waiting.outcome().code(), 0);
  EXPECT_EQ(server_->requests().size(), 2U) << "both handlers came to their end";
}

TEST(FailRules, RefuseWhatDoesNotParse) {
  for (const std::string rule :
       {"", "identity", "film:1:drop", "identity:0:drop", "identity:4-2:drop", "identity:1-:drop",
        "identity:99999999999:drop", "identity:1:explode", "identity:1:drop=1",
        "identity:1:status=99", "identity:1:delay=nan"})
    EXPECT_FALSE(FailRule::parse(rule)) << rule;
}

} // namespace
} // namespace zuvi::sandbox::test
