// Fonts, and text broken into lines.

#include "platform/CoreText/TextLayout.h"

#include <gtest/gtest.h>

namespace zuvi::test {
namespace {

TextLayout layoutOf(const std::string& text, double width, int lines) {
  return {{text, {}}, {CTFont::system(16), {}, NSTextAlignment::Left, lines}, width};
}

TEST(TextTest, CharactersAreCountedNotBytes) {
  EXPECT_EQ(characterCount("Zürich €5 😀"), 11U);
  EXPECT_EQ(uppercased("größe é"), "GRÖSSE É");
  EXPECT_EQ(uppercased("a\xff"), "A\xef\xbf\xbd");
}

TEST(TextTest, WrappingAndTruncation) {
  const std::string text = "several words that take more than one line";
  const CGSize natural = layoutOf(text, -1, 1).size();
  const double line = natural.height;
  EXPECT_GT(natural.width, 200);
  EXPECT_FALSE(layoutOf(text, -1, 1).isTruncated());
  EXPECT_FALSE(layoutOf(text, natural.width, 1).isTruncated());
  const auto wrapped = layoutOf(text, natural.width / 2 + 20, 0);
  EXPECT_NEAR(wrapped.size().height, 2 * line, 2);
  EXPECT_FALSE(wrapped.isTruncated());
  const auto cut = layoutOf(text, 80, 2);
  EXPECT_NEAR(cut.size().height, 2 * line, 2);
  EXPECT_TRUE(cut.isTruncated());
  EXPECT_GT(layoutOf(std::string(40, 'w'), 100, 0).size().height, 3 * line); // a word is broken
  EXPECT_GT(layoutOf("x", 0, 0).size().height, 0);
}

TEST(TextTest, LinesAreCountedOverAllParagraphs) {
  const double line = layoutOf("x", -1, 1).size().height;
  for (const int lines : {1, 2}) {
    const auto cut = layoutOf("first\nsecond\nthird", 200, lines);
    EXPECT_NEAR(cut.size().height, lines * line, 2) << lines;
    EXPECT_TRUE(cut.isTruncated()) << lines;
  }
  EXPECT_NEAR(layoutOf("first\nsecond\nthird", 200, 0).size().height, 3 * line, 3);
}

TEST(TextTest, BytesThatAreNoTextShowAsMarks) {
  for (const std::string bytes : {"\xff\xfe", "a\xe2\x82", "\xed\xa0\x80", "\xc0\xaf"})
    EXPECT_GT(layoutOf(bytes, 100, 0).size().width, 4) << bytes;
}

} // namespace
} // namespace zuvi::test
