#include "sandbox/core/http/Multipart.h"
#include "tests/sandbox/Samples.h"

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

TEST(Multipart, ReadsFieldsAndFileByteForByte) {
  SampleForm sample = SampleForm::ofFilm();
  sample.fields = {{"metadata[city]", "Z\xc3\xbcrich"}, {"empty", ""}, {"lines", "a\r\n--b\n"}};
  const std::string body = sample.body();
  const auto form = readForm(formType, body);
  ASSERT_TRUE(form) << form.error().message;
  ASSERT_EQ(form->fields.size(), 3U);
  EXPECT_EQ(form->fields[0].name, "metadata[city]");
  EXPECT_EQ(form->fields[0].value, "Z\xc3\xbcrich");
  EXPECT_EQ(form->fields[1].value, "");
  EXPECT_EQ(form->fields[2].value, "a\r\n--b\n");
  EXPECT_EQ(form->file.fieldName, "video");
  EXPECT_EQ(form->file.fileName, "liveness.mov");
  EXPECT_EQ(form->file.contentType, "video/quicktime");
  EXPECT_EQ(form->file.bytes, film);
}

TEST(Multipart, TakesAFileThatLooksLikeFraming) {
  SampleForm sample;
  sample.bytes = "\xff\xd8\xff\r\n--Boundary-\r\n\r\n--\r\nContent-Disposition: \r\n--";
  const std::string body = sample.body();
  const auto form = readForm(formType, body);
  ASSERT_TRUE(form) << form.error().message;
  EXPECT_EQ(form->file.bytes, sample.bytes);
}

TEST(Multipart, RefusesAContentTypeWithoutItsBoundary) {
  const std::string body = SampleForm().body();
  EXPECT_THAT(faultOf(body, ""), HasSubstr("not multipart"));
  EXPECT_THAT(faultOf(body, "application/json"), HasSubstr("not multipart"));
  EXPECT_THAT(faultOf(body, "multipart/form-data"), HasSubstr("no boundary"));
  EXPECT_THAT(faultOf(body, "multipart/form-data; boundary="), HasSubstr("plain characters"));
  EXPECT_THAT(faultOf(body, formType + "; charset=utf-8"), HasSubstr("plain characters"));
  EXPECT_THAT(faultOf(body, "multipart/form-data; boundary=" + std::string(71, 'b')),
              HasSubstr("plain characters"));
  EXPECT_THAT(faultOf(body, "multipart/form-data; boundary=another"), HasSubstr("does not open"));
}

struct BadFraming {
  const char* name;
  std::string from;
  std::string to;
  const char* fault;
};

class MultipartFraming : public testing::TestWithParam<BadFraming> {};

TEST_P(MultipartFraming, IsRefused) {
  SampleForm sample = SampleForm::ofDocument("passport", "front");
  EXPECT_EQ(faultOf(sample.body()), "none");
  EXPECT_THAT(faultOf(replaced(sample.body(), GetParam().from, GetParam().to)),
              HasSubstr(GetParam().fault));
}

const std::string line = "--" + std::string(boundary);
const std::string field = "Content-Disposition: form-data; name=\"side\"";

INSTANTIATE_TEST_SUITE_P(
    Faults, MultipartFraming,
    testing::Values(
        BadFraming{"preamble", line, "hello\r\n" + line, "does not open"},
        BadFraming{"bareLineFeedAfterBoundary", line + "\r\n", line + "\n",
                   "does not end in CR LF"},
        BadFraming{"bareLineFeedInHeader", "\"\r\nContent-Type", "\"\nContent-Type", "CR LF"},
        BadFraming{"bareLineFeedBeforeBoundary", "\r\n" + line + "--", "\n" + line + "--",
                   "not followed by CR LF"},
        BadFraming{"noEmptyLine", field + "\r\n\r\nfront", field + "\r\nfront", "does not belong"},
        BadFraming{"noDisposition", field + "\r\n", "", "no Content-Disposition"},
        BadFraming{"otherDisposition", "form-data; name=\"side\"", "attachment; name=\"side\"",
                   "not form-data"},
        BadFraming{"nameWithoutQuotes", "\"side\"", "side", "not in quotes"},
        BadFraming{"nameWithQuote", "\"side\"", "\"si\"de\"", "something follows"},
        BadFraming{"emptyName", "\"side\"", "\"\"", "empty"},
        BadFraming{"nameNotUtf8", "side\"", "s\xc0\xafide\"", "UTF-8"},
        BadFraming{"valueNotUtf8", "front", "fr\xffont", "UTF-8"},
        BadFraming{"repeatedField", "\"side\"", "\"type\"", "twice"},
        BadFraming{"typedField", field, field + "\r\nContent-Type: text/plain", "only the file"},
        BadFraming{"furtherHeader", "Content-Type: image/jpeg",
                   "Content-Type: image/jpeg\r\nContent-Transfer-Encoding: binary",
                   "does not belong"},
        BadFraming{"noFile",
                   "; filename=\"user-profile.jpg\"\r\nContent-Type: image/jpeg\r\n\r\n" + jpeg,
                   "\r\n\r\ntext", "no file"},
        BadFraming{"fileNameWithoutQuotes", "\"user-profile.jpg\"", "user-profile.jpg", "quotes"},
        BadFraming{"fileNotLast", "name=\"side\"", "name=\"side\"; filename=\"a\"", "last one"},
        BadFraming{"noClosingLine", line + "--\r\n", "", "not followed by CR LF"},
        BadFraming{"closingWithoutLineEnd", line + "--\r\n", line + "--", "closing"},
        BadFraming{"bytesBehindTheEnd", line + "--\r\n", line + "--\r\n\r\n", "closing"},
        BadFraming{"boundaryInsideALongerOne", line + "\r\n", line + "X\r\n", "CR LF"}),
    [](const auto& one) { return std::string(one.param.name); });

TEST(Multipart, RefusesEveryTruncation) {
  const std::string body = SampleForm::ofDocument("passport", "front").body();
  for (std::size_t length = 0; length < body.size(); ++length)
    EXPECT_FALSE(readForm(formType, std::string_view(body).substr(0, length))) << length;
}

} // namespace
} // namespace zuvi::sandbox::test
