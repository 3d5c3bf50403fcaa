#include "platform/Foundation/Base64.h"
#include "platform/Foundation/PercentEncoding.h"
#include "platform/Foundation/URL.h"

#include <string>

#include <glib.h>
#include <gtest/gtest.h>

namespace zuvi {
namespace {

TEST(Base64Test, AgreesWithAnotherCoderAndBreaksLines) {
  std::string bytes;
  for (std::size_t size = 0; size < 200; ++size) {
    gchar* expected = g_base64_encode(reinterpret_cast<const guchar*>(bytes.data()), bytes.size());
    const std::string text = base64Encoded(bytes);
    EXPECT_EQ(text, expected);
    g_free(expected);

    std::string broken;
    for (std::size_t i = 0; i < text.size(); i += 64)
      broken += (i > 0 ? "\r\n" : "") + text.substr(i, 64);
    EXPECT_EQ(base64Encoded(bytes, Base64Lines::Length64), broken) << size;
    bytes += static_cast<char>(size * 37);
  }
}

TEST(PercentEncodingTest, EscapesEachByteOutsideTheSet) {
  const auto& query = CharacterSet::urlQueryAllowed();
  EXPECT_EQ(addingPercentEncoding("a b&c=d/e?%\r\n\"é", query), "a%20b&c=d/e?%25%0D%0A%22%C3%A9");
  EXPECT_EQ(addingPercentEncoding("me@x.y/z+[1]", CharacterSet::urlHostAllowed()),
            "me%40x.y%2Fz+[1]");
  EXPECT_EQ(addingPercentEncoding(std::string_view("\0", 1), query), "%00");
  EXPECT_EQ(addingPercentEncoding("\xff", query), std::nullopt);
  EXPECT_EQ(addingPercentEncoding("\xed\xa0\x80", query), std::nullopt);
}

TEST(PercentEncodingTest, TheReverseRefusesWhatIsMalformed) {
  EXPECT_EQ(removingPercentEncoding("a%20b%c3%A9+"), "a bé+");
  for (const char* text : {"%", "%2", "%2g", "%g2", "%%20", "%FF", "\xff"})
    EXPECT_EQ(removingPercentEncoding(text), std::nullopt) << text;
}

TEST(URLTest, RefusesWhatIsNoAddress) {
  for (const char* text : {"", "no scheme", "/path", "h.example/x", "https://h/a b", "https://h/\n",
                           "https://h/%", "https://h/%4", "https://h/?a=%zz", "https://h:port/",
                           "https://[::1/", "1http://h/", "https://h/\xff", " https://h/"})
    EXPECT_FALSE(URL::fromString(text)) << text;
  EXPECT_FALSE(URL::fromString(std::string("https://h/\0", 11)));
}

} // namespace
} // namespace zuvi
