#include "sandbox/core/page/Snapshot.h"
#include "tests/sandbox/ServerFixture.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace zuvi::sandbox::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using zuvi::test::TemporaryFolder;

class Page : public ServerFixture {
protected:
  void SetUp() override { start(); }

  /// Stores one of everything, with text that would do harm if it were taken as markup.
  std::string fill() {
    SampleForm form = SampleForm::ofFilm();
    form.fields = {{"metadata[<img src=x>]", "\"><script>alert(1)</script>"}};
    auto identity = idOf(upload("POST", "/v1/identities", form));
    const auto document = newDocument(identity, "national-id");
    addBack(document, "national-id");
    patch(document, R"({"fields":[{"id":"fullName","value":"<b>Ines & 'Zo\u00eb'</b>"}]})");
    // {"event":"<u>tap</u>","properties":{"<i>":"</dd>"}}
    ask("POST", "/track/?data=eyJldmVudCI6Ijx1PnRhcDwvdT4iLCJwcm9wZXJ0aWVzIjp7IjxpPiI6IjwvZGQ"
                "+In19");
    return identity;
  }

  static void expectEscaped(const std::string& page) {
    EXPECT_THAT(page, AllOf(HasSubstr("&lt;img src=x&gt;"),
                            HasSubstr("&quot;&gt;&lt;script&gt;alert(1)&lt;/script&gt;"),
                            HasSubstr("&lt;b&gt;Ines &amp; &#39;Zo\xc3\xab&#39;&lt;/b&gt;"),
                            HasSubstr("&lt;u&gt;tap&lt;/u&gt;"), HasSubstr("&lt;i&gt;")));
    EXPECT_THAT(page, AllOf(Not(HasSubstr("<img src=x>")), Not(HasSubstr("alert(1)</script>")),
                            Not(HasSubstr("<b>Ines")), Not(HasSubstr("<u>tap"))));
  }
};

TEST_F(Page, ShowsWhatArrivedAsText) {
  const auto identity = fill();
  const auto page = ask("GET", "/");
  EXPECT_THAT(page.headers.at("content-security-policy"),
              AllOf(HasSubstr("default-src 'none'"), Not(HasSubstr("unsafe"))));
  EXPECT_THAT(page.body, AllOf(HasSubstr(identity), HasSubstr("National ID"), HasSubstr("Verified"),
                               Not(HasSubstr("<style")), Not(HasSubstr("No identity"))));
  expectEscaped(page.body);
}

TEST_F(Page, NewsAreAnsweredOnlyWhenThereAreSome) {
  const auto first = ask("GET", "/arrivals.json");
  const std::string known = "If-None-Match: " + first.headers.at("etag");
  EXPECT_EQ(ask("GET", "/arrivals.json", {known}).status, 304);
  newIdentity();
  const auto news = ask("GET", "/arrivals.json", {known});
  EXPECT_EQ(news.status, 200);
  EXPECT_EQ(json(news)["identities"].size(), 1U);
  start();
  EXPECT_EQ(ask("GET", "/arrivals.json", {known}).status, 200) << "another run";
}

TEST_F(Page, FilesAreServedAndNothingElse) {
  newIdentity();
  const std::string film = "/files/" + server_->arrivals()->identities[0].film.name;
  const auto whole = ask("GET", film);
  EXPECT_EQ(whole.body, test::film);
  const auto part = ask("GET", film, {"Range: bytes=4-7"});
  EXPECT_EQ(part.status, 206);
  EXPECT_EQ(part.body, "ftyp");
  EXPECT_EQ(part.headers.at("content-range"), "bytes 4-7/38");
  EXPECT_EQ(ask("GET", film, {"Range: bytes=38-"}).status, 416);

  const std::string name = film.substr(7);
  for (const std::string& path :
       {std::string("../sandbox.db"), std::string("..%2fsandbox.db"), "." + name, name + "x",
        "%2e%2e/files/" + name, name.substr(0, 36), "./" + name, std::string("%00") + name})
    EXPECT_EQ(ask("GET", "/files/" + path).status, 404) << path;
}

TEST_F(Page, SnapshotStandsWithoutTheServer) {
  const auto identity = fill();
  server_.reset();
  fs::create_directories(folder_.path("run/my screens"));
  folder_.write("run/my screens/01 \"start\".png", "png");
  folder_.write("run/my screens/notes.txt", "text");
  const fs::path page = folder_.path("run/out/index.html");
  const auto written = writeSnapshot({page, folder_.path("data"), folder_.path("run/my screens")});
  ASSERT_TRUE(written) << written.error().message;

  const std::string text = TemporaryFolder::read(page);
  expectEscaped(text);
  EXPECT_THAT(text, AllOf(HasSubstr(identity), HasSubstr("<style>"), Not(HasSubstr("page.js")),
                          Not(HasSubstr("notes")), HasSubstr("my%20screens/01%20%22start%22.png")));
  const std::string start = "src=\"";
  const auto film = text.find(start, text.find("<video"));
  const auto link =
      text.substr(film + start.size(), text.find('"', film + start.size()) - film - start.size());
  EXPECT_EQ(TemporaryFolder::read(page.parent_path() / link), test::film) << link;
}

} // namespace
} // namespace zuvi::sandbox::test
