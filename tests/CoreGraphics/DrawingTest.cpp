// Pictures of pixels, their files, drawings, and text broken into lines.

#include "platform/CoreText/TextLayout.h"
#include "platform/ImageIO/ImageFile.h"
#include "platform/ImageIO/SvgImage.h"
#include "tests/UIKit/Pixels.h"

#include <gtest/gtest.h>

namespace zuvi::test {
namespace {

using Format = CGImage::Format;

TEST(ImageTest, SizesThatDoNotFitAreRefused) {
  const Data eight(std::string(8, 'x'));
  EXPECT_TRUE(CGImage::fromPixels(eight, 2, 1, 8, Format::BGRA));
  EXPECT_FALSE(CGImage::fromPixels(eight, 0, 1, 8, Format::BGRA));
  EXPECT_FALSE(CGImage::fromPixels(eight, 2, -1, 8, Format::BGRA));
  EXPECT_FALSE(CGImage::fromPixels(eight, 3, 1, 8, Format::BGRA));
  EXPECT_FALSE(CGImage::fromPixels({}, 1, 1, 4, Format::RGB));
}

TEST(ImageTest, DamagedFilesAreNone) {
  const auto image = CGImage::fromPixels(Data(std::string(256, '7')), 8, 8, 32, Format::BGRA);
  const Data png = encodePNG(*image);
  EXPECT_TRUE(decodeImage(png));
  EXPECT_FALSE(decodeImage({}));
  EXPECT_FALSE(decodeImage(Data(png.string().substr(0, 40))));
  EXPECT_FALSE(decodeImage(Data(std::string(1000, '\xff'))));
}

constexpr const char* svg = R"(<svg xmlns="http://www.w3.org/2000/svg" width="20" height="10">
<rect width="20" height="10" fill="#00f"/></svg>)";

TEST(ImageTest, DrawingIsSharpAtEverySize) {
  const auto drawing = SvgImage::fromData(Data(std::string(svg)));
  ASSERT_TRUE(drawing);
  EXPECT_EQ(drawing->size(), (CGSize{20, 10}));
  const auto large = drawing->rasterize(200, 100);
  EXPECT_EQ(Pixels(large).count(blue, 0), 200 * 100); // to the very edge
  EXPECT_FALSE(drawing->rasterize(0, 10));
  EXPECT_FALSE(drawing->rasterize(20, 1'000'000));
  for (const std::string text : {"", "<svg", "<html/>", "\xff\xd8\xff"})
    EXPECT_FALSE(SvgImage::fromData(Data(text))) << text;
}

TextLayout layoutOf(const std::string& text, double width, int lines) {
  return {{text, {}}, {CTFont::system(16), {}, NSTextAlignment::Left, lines}, width};
}

TEST(TextTest, CharactersAreCountedNotBytes) {
  EXPECT_EQ(characterCount("Zürich €5 😀"), 11U);
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
