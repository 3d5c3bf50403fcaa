// Pictures of pixels, their files, drawings, and text broken into lines.

#include "platform/CoreText/TextLayout.h"
#include "platform/ImageIO/ImageFile.h"
#include "platform/ImageIO/SvgImage.h"
#include "testing/UIKit/Pixels.h"

#include <gtest/gtest.h>

namespace zuvi::test {
namespace {

using Format = CGImage::Format;

TEST(ImageTest, SizesThatDoNotFitAndDamagedFilesAreRefused) {
  const Data eight(std::string(8, 'x'));
  const auto image = CGImage::fromPixels(eight, 2, 1, 8, Format::BGRA);
  ASSERT_TRUE(image);
  for (const auto& [width, height] : {std::pair(0, 1), {2, -1}, {3, 1}, {2, 2}})
    EXPECT_FALSE(CGImage::fromPixels(eight, width, height, 8, Format::BGRA)) << width;
  const Data png = encodePNG(*image);
  EXPECT_TRUE(decodeImage(png));
  for (const std::string& damaged :
       {std::string(), png.string().substr(0, 40), std::string(1000, '\xff')})
    EXPECT_FALSE(decodeImage(Data(damaged))) << damaged.size();
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

TEST(TextTest, WrappingAndTruncation) {
  const std::string text = "several words that take more than one line";
  const CGSize natural = layoutOf(text, -1, 1).size();
  EXPECT_GT(natural.width, 200);
  const double half = natural.width / 2 + 20;
  const struct {
    std::string text;
    double width;
    int lines, expected;
    bool truncated;
  } rows[] = {{text, -1, 1, 1, false},
              {text, natural.width, 1, 1, false},
              {text, half, 0, 2, false},
              {text, 80, 2, 2, true},
              {"first\nsecond\nthird", 200, 1, 1, true}, // counted over all paragraphs
              {"first\nsecond\nthird", 200, 2, 2, true},
              {"first\nsecond\nthird", 200, 0, 3, false},
              {"x", 0, 0, 1, false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const TextLayout layout = layoutOf(row.text, row.width, row.lines);
    EXPECT_NEAR(layout.size().height, row.expected * natural.height, 3);
    EXPECT_EQ(layout.isTruncated(), row.truncated);
  }
  EXPECT_GT(layoutOf(std::string(40, 'w'), 100, 0).size().height, 3 * natural.height)
      << "a word is broken";
}

TEST(TextTest, BytesThatAreNoTextShowAsMarks) {
  for (const std::string bytes : {"\xff\xfe", "a\xe2\x82", "\xed\xa0\x80", "\xc0\xaf"})
    EXPECT_GT(layoutOf(bytes, 100, 0).size().width, 4) << bytes;
}

} // namespace
} // namespace zuvi::test
