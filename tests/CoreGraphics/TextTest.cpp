// Fonts, and text broken into lines.

#include "platform/CoreText/TextLayout.h"
#include "platform/UIKit/UILabel.h"
#include "tests/UIKit/ScreenFixture.h"
#include "tests/support/TemporaryFolder.h"

namespace zuvi::test {
namespace {

TextLayout layoutOf(const std::string& text, double width, int lines) {
  return {{text, {}}, {CTFont::system(16), {}, NSTextAlignment::Left, lines}, width};
}

TEST(TextTest, CharactersAreCountedNotBytes) {
  EXPECT_EQ(characterCount(""), 0U);
  EXPECT_EQ(characterCount("Zürich €5 😀"), 11U);
  EXPECT_EQ(characterCount(std::string("a\0b", 3)), 3U);
  EXPECT_EQ(uppercased("größe é"), "GRÖSSE É");
  EXPECT_EQ(lowercased("ÀÉ Đ"), "àé đ");
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
  EXPECT_LE(cut.size().width, 80);
  EXPECT_TRUE(cut.isTruncated());
  EXPECT_GT(layoutOf(std::string(40, 'w'), 100, 0).size().height, 3 * line); // a word is broken
  EXPECT_GT(layoutOf("", 100, 0).size().height, 0);
  EXPECT_GT(layoutOf("x", 0, 0).size().height, 0);
}

TEST(TextTest, LinesAreCountedOverAllParagraphs) {
  const double line = layoutOf("x", -1, 1).size().height;
  for (const int lines : {1, 2}) {
    const auto cut = layoutOf("first\nsecond\nthird", 200, lines);
    EXPECT_NEAR(cut.size().height, lines * line, 2) << lines;
    EXPECT_TRUE(cut.isTruncated()) << lines;
  }
  EXPECT_FALSE(layoutOf("first\nsecond", 200, 2).isTruncated());
  EXPECT_NEAR(layoutOf("first\nsecond\nthird", 200, 0).size().height, 3 * line, 3);
  EXPECT_NEAR(layoutOf("first\nquite a long second one\nthird", 100, 2).size().height, 2 * line, 2);
}

TEST(TextTest, BytesThatAreNoTextShowAsMarks) {
  for (const std::string bytes : {"\xff\xfe", "a\xe2\x82", "\xed\xa0\x80", "\xc0\xaf"})
    EXPECT_GT(layoutOf(bytes, 100, 0).size().width, 4) << bytes;
}

TEST(TextTest, FontsByNameOnlyWhenThereIsOne) {
  EXPECT_FALSE(CTFont::named("NoSuchFace-Bold", 12));
  EXPECT_FALSE(CTFont::named("", 12));
  const TemporaryFolder folder;
  EXPECT_FALSE(CTFontManagerRegisterFontsForURL(folder.path("away.otf")));
  EXPECT_FALSE(CTFontManagerRegisterFontsForURL(folder.write("bad.otf", "no font")));
  const auto bold = CTFont::system(20, FontWeight::Bold), plain = CTFont::system(20);
  const auto width = [](const std::shared_ptr<const CTFont>& font) {
    return TextLayout({"mmmmmmmmmm", {}}, {font, {}, NSTextAlignment::Left, 1}, -1).size().width;
  };
  EXPECT_GT(width(bold), width(plain));
  // Another size is the same face.
  EXPECT_EQ(width(bold->withSize(10)), width(CTFont::system(10, FontWeight::Bold)));
  EXPECT_EQ(bold->withSize(10)->pointSize(), 10);
  EXPECT_NEAR(plain->withSize(40)->lineHeight(), 2 * plain->lineHeight(), 0.1);
}

class TextColorTest : public ScreenFixture {};

TEST_F(TextColorTest, RangesCountCharactersAndEndWithTheText) {
  const auto label = add<UILabel>({0, 0, 300, 40});
  label->setTextColor({0, 0, 0, 1});
  label->setFont(CTFont::system(30, FontWeight::Bold));
  const auto colored = [&](std::size_t location, std::size_t length) {
    label->setAttributedText(AttributedString{"ÄÖÜIII", {{location, length, {1, 0, 0, 1}}}});
    const Pixels seen = screen();
    double last = 0, first = 300;
    for (double x = 0; x < 300; x += 0.5)
      for (double y = 0; y < 40; y += 0.5)
        if (seen.at(x, y).isNear(red, 30)) first = std::min(first, x), last = std::max(last, x);
    return std::pair(first, last);
  };
  const auto prefix = [](const std::string& text) {
    return TextLayout({text, {}}, {CTFont::system(30, FontWeight::Bold), {}}, -1).size().width;
  };
  const auto [first, last] = colored(2, 2); // "ÜI"
  EXPECT_NEAR(first, prefix("ÄÖ"), 5);
  EXPECT_NEAR(last, prefix("ÄÖÜI"), 5);
  EXPECT_EQ(colored(6, 2).second, 0); // past the end
  EXPECT_EQ(colored(1, 0).second, 0);
  const auto rest = colored(4, std::string::npos);
  EXPECT_NEAR(rest.first, prefix("ÄÖÜI"), 5);
  label->setText("ÄÖÜIII"); // takes the colours away
  EXPECT_EQ(screen().count(red, 30), 0);
}

} // namespace
} // namespace zuvi::test
