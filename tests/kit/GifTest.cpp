// Animated pictures.

#include "kit/Helper/UIImage+Gif.h"
#include "platform/Foundation/URLSession.h"
#include "testing/kit/KitTest.h"
#include "testing/support/GifBytes.h"

#include <set>

#include <unistd.h>

namespace zuvi {
namespace {

using test::makeGif;

using GifTest = KitTest;

std::shared_ptr<const UIImage> played(const std::vector<int>& delays) {
  std::vector<test::GifBlock> blocks;
  for (const int delay : delays)
    blocks.push_back({.colors = "1", .delay = delay});
  return gifFromData(makeGif(1, 1, blocks));
}

TEST_F(GifTest, RepeatsEachFrameForAsManySlicesAsItsDelayNeeds) {
  const auto image = played({10, 25, 10});
  const auto& frames = image->images();
  ASSERT_EQ(frames.size(), 9U);
  EXPECT_EQ(frames[2], frames[6]) << "the same picture, decoded once";
  EXPECT_NE(frames[1], frames[2]);

  const struct {
    std::vector<int> delays;
    std::size_t frames;
    double duration;
  } rows[] = {{{10, 25, 10}, 9, 0.45}, {{0, 0, 0}, 3, 0.3},  {{-1}, 1, 0.1},
              {{20}, 1, 0.2},          {{65535}, 1, 655.35}, {{0, 5, 20, 30}, 7, 0.7}};
  for (const auto& row : rows) {
    const auto one = played(row.delays);
    EXPECT_EQ(one->images().size(), row.frames);
    EXPECT_DOUBLE_EQ(one->duration(), row.duration);
  }
}

TEST_F(GifTest, LeavesOutAFrameThatBreaksOff) {
  const std::string whole =
      makeGif(9, 9, {{.colors = "1", .delay = 30}, {0, 0, 9, 9, "3210", 20}}).string();
  const auto image = gifFromData(Data(whole.substr(0, whole.size() - 8)));
  ASSERT_TRUE(image);
  EXPECT_EQ(image->images().size(), 1U);
  EXPECT_DOUBLE_EQ(image->duration(), 0.3);
}

TEST_F(GifTest, TakesTheSecondDelayWhereTheFirstIsZero) {
  const std::tuple<Value, Value, double> rows[] = {
      {0, 0.2, 0.2}, {0.3, 0.2, 0.3}, {"0.3", {}, 0.1}};
  for (const auto& [unclamped, clamped, delay] : rows)
    EXPECT_EQ(
        delayOfProperties({{kCGImagePropertyGIFDictionary,
                            Value::Dictionary{{kCGImagePropertyGIFUnclampedDelayTime, unclamped},
                                              {kCGImagePropertyGIFDelayTime, clamped}}}}),
        delay);
}

TEST_F(GifTest, SaysWhatItCannotRead) {
  EXPECT_FALSE(gifNamed("nothing"));
  EXPECT_FALSE(gifFromURL("no address"));
  EXPECT_FALSE(gifFromURL("file:///nowhere/a.gif"));
  EXPECT_FALSE(gifFromData(Data(std::string("text"))));
  EXPECT_FALSE(played({}));
  EXPECT_THAT(printed,
              testing::ElementsAre(
                  "SwiftGif: This image named \"nothing\" does not exist",
                  "SwiftGif: This image named \"no address\" does not exist",
                  "SwiftGif: Cannot turn image named \"file:///nowhere/a.gif\" into NSData",
                  "SwiftGif: Source for the image does not exist",
                  "SwiftGif: The image has no frames"));
}

TEST_F(GifTest, ComesOverTheNetwork) {
  backend.answer(makeGif(1, 1, {{.colors = "1", .delay = 30}}).string());
  const auto image = gifFromURL(backend.url("/a.gif"));
  ASSERT_TRUE(image);
  EXPECT_DOUBLE_EQ(image->duration(), 0.3);
}

TEST_F(GifTest, KeepsNoProcessFromEnding) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        alarm(20);
        URLSession::shared(); // made first, so it would end last
        backend.hold();
        DispatchQueue::global().async([url = backend.url("/a.gif")] { gifFromURL(url); });
        time.waitUntil([&] { return !backend.requests().empty(); });
        std::exit(0);
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(GifTest, TheInstructionMoves) {
  const auto view = make<UIImageView>();
  loadGif(view, "liveness");
  ASSERT_TRUE(time.waitUntil([&] { return view->image() != nullptr; }));
  const auto& frames = view->image()->images();
  EXPECT_GE(std::set(frames.begin(), frames.end()).size(), 15U);
}

} // namespace
} // namespace zuvi
