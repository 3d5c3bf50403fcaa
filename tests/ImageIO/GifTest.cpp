#include "platform/ImageIO/CGImageSource.h"
#include "platform/ImageIO/ImageFile.h"
#include "testing/support/GifBytes.h"

#include <gtest/gtest.h>

namespace zuvi::test {
namespace {

/// A letter for each pixel: r, g, b, w, and a dot for nothing.
std::string pixelsOf(const CGImageSource& source, std::size_t index) {
  const auto image = source.createImageAtIndex(index);
  if (!image) return "none";
  const Data pixels = image->pixels();
  std::string letters;
  for (std::size_t i = 0; i < pixels.size(); i += 4) {
    const auto* bgra = pixels.bytes() + i;
    const int bits = (bgra[2] ? 4 : 0) | (bgra[1] ? 2 : 0) | (bgra[0] ? 1 : 0);
    letters += bgra[3] == 0 ? '.' : bits == 4 ? 'r' : bits == 2 ? 'g' : bits == 1 ? 'b' : 'w';
  }
  return letters;
}

TEST(Gif, LaysFramesOverOneAnotherAsTheySay) {
  const auto source = CGImageSource::createWithData(
      makeGif(3, 2,
              {{0, 0, 3, 2, "000000", 10},
               {1, 0, 2, 1, "12", 10, DISPOSE_PREVIOUS},
               {0, 1, 2, 1, "31", 10, DISPOSE_BACKGROUND, 1},
               {2, 1, 1, 1, "0", 10, DISPOSE_DO_NOT, NO_TRANSPARENT_COLOR, false, true},
               {2, 0, 3, 3, "222222222", 10}})); // reaches out of the picture
  ASSERT_TRUE(source);
  const std::vector<std::string> pictures{"rrrrrr", "rgbrrr", "rrrwrr", "rrr..w", "rrb..b"};
  ASSERT_EQ(source->count(), pictures.size());
  for (std::size_t i = 0; i < pictures.size(); i++)
    EXPECT_EQ(pixelsOf(*source, i), pictures[i]) << i;
  EXPECT_EQ(pixelsOf(*source, 5), "none");
  // Interlaced rows come 0, 8, 4, 2, 6, then the odd ones; the writer takes them in this order.
  const auto rows = CGImageSource::createWithData(
      makeGif(1, 9, {{0, 0, 1, 9, "012300000", -1, 0, NO_TRANSPARENT_COLOR, true}}));
  EXPECT_EQ(pixelsOf(*rows, 0), "rrwrbrrrg");
}

TEST(Gif, GivesWhatCameBeforeAFileBreaksOff) {
  const std::string whole =
      makeGif(3, 3, {{0, 0, 3, 3, "012301230", 10}, {1, 1, 2, 2, "3333", 10}}).string();
  std::size_t most = 0;
  for (std::size_t length = 0; length < whole.size(); length++) {
    const auto source = CGImageSource::createWithData(Data(whole.substr(0, length)));
    if (!source) continue;
    EXPECT_GE(source->count(), most) << length;
    most = source->count();
    for (const auto& [index, picture] : {std::pair(0U, "rgbwrgbwr"), {1U, "rgbwwwbww"}}) {
      const std::string there = pixelsOf(*source, index);
      EXPECT_TRUE(there == picture || there == "none") << there << " at " << length;
    }
  }
  EXPECT_EQ(most, 2U);
}

TEST(Gif, SurvivesBytesThatLie) {
  const std::string whole = makeGif(3, 3, {{0, 0, 3, 3, "012301230", 10}}).string();
  for (std::size_t at = 6; at < whole.size(); at++)
    for (const char lie : {'\0', '\x7f', '\xff'}) {
      std::string bytes = whole;
      bytes[at] = lie;
      const auto source = CGImageSource::createWithData(Data(bytes));
      for (std::size_t i = 0; source && i < source->count(); i++)
        source->createImageAtIndex(i);
    }
  for (const Data& none : {makeGif(65535, 65535, {}), Data(), Data(std::string("no picture"))})
    EXPECT_FALSE(CGImageSource::createWithData(none));
  // A few bytes make one large picture, not many of them.
  const auto large =
      CGImageSource::createWithData(makeGif(4096, 4096, {{.delay = 10}, {.delay = 10}}));
  ASSERT_TRUE(large);
  EXPECT_TRUE(large->createImageAtIndex(0));
  EXPECT_EQ(pixelsOf(*large, 1), "none");
  EXPECT_EQ(CGImageSource::createWithData(makeGif(1, 1, {}))->count(), 0U);
}

TEST(Jpeg, IsDecodedWhenItsSizeCanBeBorne) {
  // Grey, with one code in each table; what its data lack is grey as well.
  const auto jpeg = [](char high, char low) {
    const std::string code = '\1' + std::string(16, '\0'), size{high, low};
    return Data("\xff\xd8\xff\xdb" + std::string("\0\x43\0", 3) + std::string(64, '\1') +
                std::string("\xff\xc0\0\x0b\x8", 5) + size + size + std::string("\1\1\x11\0", 4) +
                std::string("\xff\xc4\0\x14\0", 5) + code + std::string("\xff\xc4\0\x14\x10", 5) +
                code + std::string("\xff\xda\0\x8\1\1\0\0\x3f\0\x3f\xff\xd9", 13));
  };
  const auto small = decodeImage(jpeg(0, 8));
  ASSERT_TRUE(small);
  EXPECT_EQ(small->width(), 8);
  EXPECT_FALSE(decodeImage(jpeg(0x23, 0x28))) << "9000 by 9000";
}

} // namespace
} // namespace zuvi::test
