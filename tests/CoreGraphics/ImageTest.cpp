// Pictures of pixels, their files, and drawings.

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

TEST(ImageTest, PngKeepsEveryPixelAndDamagedFilesAreNone) {
  std::string bytes;
  for (int i = 0; i < 64; i++)
    bytes += std::string{char(i), char(2 * i), char(3 * i), '\xff'};
  const auto image = CGImage::fromPixels(Data(bytes), 8, 8, 32, Format::BGRA);
  const Data png = encodePNG(*image);
  EXPECT_EQ(png.string().substr(1, 3), "PNG");
  const auto again = decodeImage(png);
  ASSERT_TRUE(again);
  EXPECT_EQ(Pixels::difference(Pixels(image), Pixels(again)), "");
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

} // namespace
} // namespace zuvi::test
