#include "testing/backend/ServerFixture.h"

#include <gmock/gmock.h>

namespace zuvi::sandbox::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

using Page = ServerFixture;

TEST_F(Page, ShowsWhatArrivedAsText) {
  start();
  // One of everything, with text that would do harm if it were taken as markup.
  SampleForm form = SampleForm::ofFilm();
  form.fields = {{"metadata[<img src=x>]", "\"><script>alert(1)</script>"}};
  const auto identity = idOf(upload("POST", "/v1/identities", form));
  const auto document = newDocument(identity, "national-id");
  addBack(document, "national-id");
  patch(document, R"({"fields":[{"id":"fullName","value":"<b>Ines & 'Zo\u00eb'</b>"}]})");
  // {"event":"<u>tap</u>","properties":{"<i>":"</dd>"}}
  ask("POST", "/track/?data=eyJldmVudCI6Ijx1PnRhcDwvdT4iLCJwcm9wZXJ0aWVzIjp7IjxpPiI6IjwvZGQ+In19");
  for (const char* path : {"/", "/chat/open"})
    EXPECT_THAT(ask("GET", path).headers.at("content-security-policy"),
                AllOf(HasSubstr("default-src 'none'"), Not(HasSubstr("unsafe"))));
  const auto page = ask("GET", "/");
  EXPECT_THAT(page.body, AllOf(HasSubstr(identity), HasSubstr("National ID"), HasSubstr("Verified"),
                               Not(HasSubstr("<style")), Not(HasSubstr("No identity"))));
  EXPECT_THAT(page.body, AllOf(HasSubstr("&lt;img src=x&gt;"),
                               HasSubstr("&quot;&gt;&lt;script&gt;alert(1)&lt;/script&gt;"),
                               HasSubstr("&lt;b&gt;Ines &amp; &#39;Zo\xc3\xab&#39;&lt;/b&gt;"),
                               HasSubstr("&lt;u&gt;tap&lt;/u&gt;"), HasSubstr("&lt;i&gt;")));
  EXPECT_THAT(page.body, AllOf(Not(HasSubstr("<img src=x>")), Not(HasSubstr("alert(1)</script>")),
                               Not(HasSubstr("<b>Ines")), Not(HasSubstr("<u>tap"))));
}

TEST_F(Page, FilesAreServedAndNothingElse) {
  start();
  newIdentity();
  const std::string film = "/files/" + server_->arrivals()->identities[0].film.name;
  const auto whole = ask("GET", film);
  EXPECT_EQ(whole.body, test::film);
  const auto part = ask("GET", film, {{"Range", "bytes=4-7"}});
  EXPECT_EQ(part.status, 206);
  EXPECT_EQ(part.body, "ftyp");
  EXPECT_EQ(part.headers.at("content-range"), "bytes 4-7/38");
  EXPECT_EQ(ask("GET", film, {{"Range", "bytes=38-"}}).status, 416);
  const std::string port = server_->address().substr(server_->address().rfind(':'));
  EXPECT_EQ(send(to("http://other.localhost" + port + film)).response->statusCode, 403);

  const std::string name = film.substr(7);
  for (const std::string& path :
       {std::string("../sandbox.db"), std::string("..%2fsandbox.db"), "." + name, name + "x",
        "%2e%2e/files/" + name, name.substr(0, 36), "./" + name, std::string("%00") + name})
    EXPECT_EQ(ask("GET", "/files/" + path).status, 404) << path;
}

} // namespace
} // namespace zuvi::sandbox::test
