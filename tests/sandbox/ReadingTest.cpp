#include "sandbox/core/http/Multipart.h"
#include "testing/backend/Samples.h"

#include <gmock/gmock.h>

namespace zuvi::sandbox::test {
namespace {

using testing::HasSubstr;

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const auto at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

std::string faultOf(const std::string& body, const std::string& type = formType) {
  const auto form = readForm(type, body);
  return form ? "none" : form.error().message;
}

TEST(Multipart, RefusesWhatIsNotFramedToTheLetter) {
  const std::string line = "--" + std::string(boundary), side = "\"side\"";
  const std::string body = SampleForm::ofDocument("passport", "front").body();
  EXPECT_EQ(faultOf(body), "none");
  struct Case {
    std::string from, to, fault;
  };
  for (const auto& [from, to, fault] : {
           Case{line, "hello\r\n" + line, "does not open"},
           Case{line + "\r\n", line + "\n", "does not end in CR LF"},
           Case{"\"\r\nContent-Type", "\"\nContent-Type", "CR LF"},
           Case{"\r\n" + line + "--", "\n" + line + "--", "not followed by CR LF"},
           Case{side + "\r\n\r\nfront", side + "\r\nfront", "does not belong"},
           Case{"form-data; name=\"side\"", "attachment; name=\"side\"", "not form-data"},
           Case{side, "side", "not in quotes"},
           Case{side, "\"si\"de\"", "something follows"},
           Case{side, "\"\"", "empty"},
           Case{"front", "fr\xffont", "UTF-8"},
           Case{side, "\"type\"", "twice"},
           Case{side, side + "\r\nContent-Type: text/plain", "only the file"},
           Case{side, side + "\r\nContent-Type: ", "does not belong"},
           Case{"name=\"side\"", "name=\"side\"; filename=\"a\"", "last one"},
           Case{line + "--\r\n", line + "--\r\n\r\n", "closing"},
           Case{line + "\r\n", line + "X\r\n", "CR LF"},
       })
    EXPECT_THAT(faultOf(replaced(body, from, to)), HasSubstr(fault));
  const std::string type = "multipart/form-data";
  for (const std::string& other : {std::string("application/json"), type, type + "; boundary=",
                                   formType + "; charset=utf-8", type + "; boundary=another"})
    EXPECT_NE(faultOf(body, other), "none") << other;
  for (std::size_t length = 0; length < body.size(); ++length)
    EXPECT_FALSE(readForm(formType, std::string_view(body).substr(0, length))) << length;
}

} // namespace
} // namespace zuvi::sandbox::test
