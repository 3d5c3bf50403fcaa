// Pictures of pixels, their files, and drawings.

#include "platform/ImageIO/ImageFile.h"
#include "platform/ImageIO/SvgImage.h"
#include "platform/UIKit/UIImage.h"
#include "tests/UIKit/Pixels.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace zuvi::test {
namespace {

using Format = CGImage::Format;

TEST(ImageTest, PixelsOfEveryFormatAndRowLength) {
  // Two rows of one pixel, with bytes between them that belong to none.
  const std::string bgr("\x01\x02\xff\x40..\x03\x04\xfe\x50", 10);
  const auto opaque = CGImage::fromPixels(Data(bgr), 1, 2, 6, Format::BGRX);
  ASSERT_TRUE(opaque);
  EXPECT_TRUE(Pixels(opaque).pixel(0, 0).isNear({255, 2, 1, 255}, 0));
  EXPECT_TRUE(Pixels(opaque).pixel(0, 1).isNear({254, 4, 3, 255}, 0));
  const auto rgb = CGImage::fromPixels(Data(std::string("\xff\x02\x01")), 1, 1, 3, Format::RGB);
  EXPECT_TRUE(Pixels(rgb).pixel(0, 0).isNear({255, 2, 1, 255}, 0));
  const auto clear =
      CGImage::fromPixels(Data(std::string("\x10\0\0\x20", 4)), 1, 1, 4, Format::BGRA);
  EXPECT_EQ(clear->pixels().string(), std::string("\x10\0\0\x20", 4));
}

TEST(ImageTest, SizesThatDoNotFitAreRefused) {
  const Data eight(std::string(8, 'x'));
  EXPECT_TRUE(CGImage::fromPixels(eight, 2, 1, 8, Format::BGRA));
  EXPECT_FALSE(CGImage::fromPixels(eight, 0, 1, 8, Format::BGRA));
  EXPECT_FALSE(CGImage::fromPixels(eight, 2, -1, 8, Format::BGRA));
  EXPECT_FALSE(CGImage::fromPixels(eight, 2, 2, 8, Format::BGRA));
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
  const auto tall = drawing->rasterize(20, 40);       // keeps its proportions
  EXPECT_EQ(Pixels(tall).count(blue, 0), 20 * 10);
  EXPECT_FALSE(drawing->rasterize(0, 10));
  EXPECT_FALSE(drawing->rasterize(20, 1'000'000));
  const auto box = SvgImage::fromData(Data(
      std::string(R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 30 40"><g/></svg>)")));
  ASSERT_TRUE(box);
  EXPECT_EQ(box->size(), (CGSize{30, 40}));
  for (const std::string text : {"", "<svg", "<html/>", "\xff\xd8\xff"})
    EXPECT_FALSE(SvgImage::fromData(Data(text))) << text;
}

TEST(ImageTest, PicturesOfABundleAreFoundByNameAndReadOnce) {
  const TemporaryFolder folder;
  folder.write("drawn.svg", svg);
  folder.write("broken.svg", "<svg");
  folder.write("broken.png",
               encodePNG(*SvgImage::fromData(Data(std::string(svg)))->rasterize(4, 2)).string());
  const Bundle bundle(folder.path());
  const auto drawn = UIImage::named("drawn", bundle);
  ASSERT_TRUE(drawn);
  EXPECT_EQ(drawn->name(), "drawn");
  EXPECT_EQ(drawn->size(), (CGSize{20, 10}));
  EXPECT_EQ(drawn->pixels({20, 10}, 2)->width(), 40);
  EXPECT_EQ(UIImage::named("drawn", bundle), drawn);
  EXPECT_EQ(UIImage::named("broken", bundle)->size(), (CGSize{4, 2})); // the next type serves
  EXPECT_FALSE(UIImage::named("away", bundle));
  EXPECT_FALSE(UIImage::named("", bundle));
  EXPECT_FALSE(UIImage::animatedImage({}, 1));
}

} // namespace
} // namespace zuvi::test
