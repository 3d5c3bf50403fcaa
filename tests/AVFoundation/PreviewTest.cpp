#include "tests/AVFoundation/CameraFixture.h"
#include "tests/AVFoundation/MediaReaderGStreamer.h"
#include "tests/AVFoundation/RecipeProvider.h"

#include <thread>

namespace zuvi {
namespace {

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
    for (int ms = 0; !still->done() && ms < 5000; ms++)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    ASSERT_TRUE(still->jpeg);
  }
  EXPECT_LE(DispatchQueue::main().runDue(), 1);
}

TEST_F(PreviewTest, SurvivesItsSessionAndMayGoFirst) {
  useHost(simulated());
  auto rig = std::make_unique<Rig>(back());
  auto layer = make<AVCaptureVideoPreviewLayer>(rig->session);
  auto other = make<AVCaptureVideoPreviewLayer>(rig->session);
  Surface surface(layer);
  rig->session->startRunning();
  {
    Surface second(other);
    ASSERT_TRUE(time.waitUntil([&] { return layer->contents() && other->contents(); }));
  }
  other.reset();
  const auto before = layer->contents();
  EXPECT_TRUE(time.waitUntil([&] { return layer->contents() != before; }));
  rig.reset();
  EXPECT_FALSE(layer->session());
  film(0.2);
  EXPECT_TRUE(layer->contents());
}

} // namespace
} // namespace zuvi
