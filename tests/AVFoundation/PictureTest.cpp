#include "platform/AVFoundation/AVError.h"
#include "platform/ImageIO/ImageFile.h"
#include "testing/AVFoundation/CameraFixture.h"
#include "testing/AVFoundation/RecipeProvider.h"

#include <cmath>
#include <thread>

namespace zuvi {
namespace {

class StillTest : public CameraTest {
protected:
  /// A file with smooth colours and sharp edges, as the bytes of a PNG.
  std::string makePicture(int width, int height) {
    std::string pixels;
    for (int y = 0; y < height; y++)
      for (int x = 0; x < width; x++)
        pixels += x * 4 < width && y * 2 < height
                      ? "\x1e\x14\xdc\xff"
                      : std::string{char(255 * x / width), char(255 * y / height), 'Z', '\xff'};
    auto image = CGImage::fromPixels(Data(pixels), width, height, std::size_t(width) * 4,
                                     CGImage::Format::BGRA);
    return folder.write("picture.png", encodePNG(*image).view());
  }

  static double meanDifference(const CGImage& a, const CGImage& b) {
    const auto left = a.pixels(), right = b.pixels();
    double sum = 0;
    for (std::size_t i = 0; i < left.size(); i++)
      sum += std::abs(int(left.bytes()[i]) - int(right.bytes()[i]));
    return sum / double(left.size());
  }
};

TEST_F(StillTest, EqualsTheSourceAtFullSize) {
  for (auto [width, height] : {std::pair{1600, 1200}, std::pair{301, 201}}) {
    const auto path = makePicture(width, height);
    useHost(backFrom(path));
    const auto still = take(*running());
    ASSERT_TRUE(still->jpeg);
    EXPECT_FALSE(still->error || still->onMain);
    const auto taken = decodeImage(*still->jpeg);
    const auto source = decodeImage(Data(test::TemporaryFolder::read(path)));
    ASSERT_TRUE(taken && source);
    ASSERT_EQ(std::pair(taken->width(), taken->height()), std::pair(width, height));
    EXPECT_LT(meanDifference(*taken, *source), 2.0);

    // The JPEG that was taken can itself be shown, and keeps its colours.
    useHost(backFrom(folder.write("taken.jpg", still->jpeg->view())));
    const auto again = take(*running());
    EXPECT_LT(meanDifference(*decodeImage(*again->jpeg), *source), 3.0);
  }
}

TEST_F(StillTest, ComesAfterTheCall) {
  // Every picture differs from the one before, and is 0.3 seconds on its way.
  auto provider = make<RecipeProvider>("videotestsrc is-live=true pattern=snow ! "
                                       "video/x-raw,width=64,height=64,framerate=30/1 ! "
                                       "queue min-threshold-time=300000000 max-size-buffers=0");
  AVCaptureDevice::setProvider(provider);
  Rig rig(back());
  rig.session->startRunning();
  std::vector<std::shared_ptr<AskedStill>> together{rig.askStill(), rig.askStill()};
  ASSERT_TRUE(time.waitUntil([&] { return together[0]->done() && together[1]->done(); }));
  EXPECT_EQ(*together[0]->jpeg, *together[1]->jpeg);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(*take(rig)->jpeg == *together[0]->jpeg);
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  EXPECT_GT(took.count(), 0.25) << "the camera saw that one before it was asked";
}

TEST_F(StillTest, IsAnsweredOnceWithoutCamera) {
  // Opens, and never gives a picture.
  auto provider = make<RecipeProvider>("appsrc caps=video/x-raw,format=I420,width=64,height=64");
  AVCaptureDevice::setProvider(provider);
  Rig rig(back());
  auto early = take(rig);
  EXPECT_EQ(early->error.value().code, AVErrorSessionNotRunning);

  rig.session->startRunning();
  auto patient = take(rig); // bounded by the output's own patience
  EXPECT_FALSE(patient->jpeg);
  EXPECT_TRUE(patient->error);
  auto stopped = rig.askStill();
  rig.session->stopRunning();
  ASSERT_TRUE(time.waitUntil([&] { return stopped->done(); }, 1));
  EXPECT_FALSE(stopped->jpeg);
  EXPECT_TRUE(stopped->error);

  rig.session->startRunning();
  auto dropped = rig.askStill();
  rig.session.reset();
  rig.input.reset();
  ASSERT_TRUE(time.waitUntil([&] { return dropped->done(); }, 1));
  EXPECT_FALSE(dropped->jpeg);
  for (const auto& still : {early, patient, stopped, dropped})
    EXPECT_EQ(still->answers, 1);
}

using PreviewTest = CameraTest;

TEST_F(PreviewTest, ShowsPicturesInTheirColoursWhileOnASurface) {
  AVCaptureDevice::setProvider(make<RecipeProvider>(
      "videotestsrc is-live=true pattern=solid-color foreground-color=0xffc83c28 ! "
      "video/x-raw,format=I420,width=322,height=200,framerate=30/1"));
  Rig rig(back());
  auto layer = make<AVCaptureVideoPreviewLayer>(rig.session);
  rig.session->startRunning();
  ASSERT_TRUE(warm(rig));
  film(0.3);
  EXPECT_FALSE(layer->contents()) << "nobody sees the layer";

  {
    Surface surface(layer);
    ASSERT_TRUE(time.waitUntil([&] { return layer->contents() != nullptr; }));
    const auto image = layer->contents();
    ASSERT_EQ(std::pair(image->width(), image->height()), std::pair(322, 200));
    const auto pixels = image->pixels();
    const auto* bgra = pixels.bytes() + (100 * 322 + 161) * 4;
    for (const auto& [part, value] : {std::pair{0, 0x28}, {1, 0x3c}, {2, 0xc8}, {3, 0xff}})
      EXPECT_NEAR(bgra[part], value, 4) << part;
    EXPECT_TRUE(time.waitUntil([&] { return layer->contents() != image; })) << "it moves on";
  }
  film(0.1);
  const auto last = layer->contents();
  film(0.3);
  EXPECT_EQ(layer->contents(), last) << "off the surface it takes no pictures";
  rig.session->stopRunning();
  EXPECT_EQ(layer->contents(), last);
}

TEST_F(PreviewTest, LeavesOnePictureWaitingForABusyMainThread) {
  useHost(simulated());
  Rig rig(back());
  auto layer = make<AVCaptureVideoPreviewLayer>(rig.session);
  Surface surface(layer);
  rig.session->startRunning();
  ASSERT_TRUE(time.waitUntil([&] { return layer->contents() != nullptr; }));
  // The main thread is held up for as long as ten stills, so for ten pictures or more.
  for (int i = 0; i < 10; i++) {
    auto still = rig.askStill();
    while (!still->done())
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_LE(DispatchQueue::main().runDue(), 1);
  rig.session.reset();
  EXPECT_FALSE(layer->session());
  film(0.2);
  EXPECT_TRUE(layer->contents()) << "the last picture stays";
}

} // namespace
} // namespace zuvi
