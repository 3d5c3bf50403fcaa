#include <ZuviSDK/Foundation/Print.h>
#include "platform/AVFoundation/AVError.h"
#include "testing/AVFoundation/CameraFixture.h"
#include "testing/AVFoundation/MediaReaderGStreamer.h"
#include "testing/AVFoundation/RecipeProvider.h"

#include <gmock/gmock.h>

namespace zuvi {
namespace {

constexpr const char* steadyCamera =
    "videotestsrc is-live=true ! video/x-raw,width=320,height=240,framerate=30/1";
constexpr double freeWithin = 0.5;

class SessionTest : public CameraTest {
protected:
  std::shared_ptr<RecipeProvider> use(const std::string& elements) {
    auto provider = make<RecipeProvider>(elements);
    AVCaptureDevice::setProvider(provider);
    return provider;
  }
};

TEST_F(SessionTest, SharesOneCameraAndFreesItAfterTheLastStop) {
  auto camera = use(steadyCamera);
  Rig recorder(back()), document(back());
  EXPECT_EQ(camera->opened(), 0) << "an input alone does not open the camera";
  recorder.session->startRunning();
  ASSERT_TRUE(warm(recorder));
  document.session->startRunning();
  ASSERT_TRUE(warm(document));
  EXPECT_EQ(camera->opened(), 1);

  // A film of one session goes on while the other one leaves.
  auto listener = std::make_shared<FilmListener>();
  recorder.film->startRecording(folder.path("film.mov"), listener);
  film(0.2);
  document.session->stopRunning();
  ASSERT_TRUE(warm(recorder));
  film(0.2);
  recorder.film->stopRecording();
  ASSERT_TRUE(time.waitUntil([&] { return !listener->ends().empty(); }));
  EXPECT_NEAR(readFilm(folder.path("film.mov")).seconds, 0.4, 0.2);

  EXPECT_EQ(camera->closed(), 0);
  recorder.session->stopRunning();
  EXPECT_TRUE(time.waitUntil([&] { return camera->closed() == 1; }, freeWithin));
  for (int i = 0; i < 5; i++) {
    recorder.session->startRunning();
    recorder.session->stopRunning();
  }
  recorder.session->startRunning();
  ASSERT_TRUE(warm(recorder));
  EXPECT_EQ(camera->opened() - camera->closed(), 1);
  recorder.film->startRecording(folder.path("dropped.mov"), {});
  recorder.session.reset();
  EXPECT_TRUE(time.waitUntil([&] { return camera->closed() == camera->opened(); }, freeWithin));
}

TEST_F(SessionTest, VanishingCameraEndsTheRunAndCanBeStartedAgain) {
  // Ends by itself; fails in the middle; is never there.
  for (const char* elements :
       {"videotestsrc is-live=true num-buffers=20 ! video/x-raw,framerate=30/1",
        "videotestsrc is-live=true ! video/x-raw,framerate=30/1 ! identity error-after=20",
        "filesrc location=/nonexistent ! decodebin"}) {
    SCOPED_TRACE(elements);
    auto camera = use(elements);
    Rig rig(back());
    auto listener = std::make_shared<FilmListener>();
    for (int run = 1; run <= 2; run++) {
      rig.session->startRunning();
      rig.film->startRecording(folder.path("film.mov"), listener);
      ASSERT_TRUE(time.waitUntil([&] { return !rig.session->isRunning(); }));
      EXPECT_TRUE(time.waitUntil([&] { return camera->closed() == run; }, freeWithin));
      EXPECT_EQ(camera->opened(), run);
      ASSERT_TRUE(time.waitUntil([&] { return int(listener->ends().size()) == run; }));
      // A camera that is never there may be gone before the film is asked for.
      EXPECT_THAT(listener->ends().back().error.value().code,
                  ::testing::AnyOf(AVErrorDeviceWasDisconnected, AVErrorSessionNotRunning,
                                   AVErrorNoDataCaptured));
      EXPECT_FALSE(rig.film->isRecording());
      rig.film->stopRecording();
      rig.session->stopRunning(); // without effect by now
    }
  }
}

TEST_F(SessionTest, MissingPluginIsALineAndNoCrash) {
  std::string printed;
  setPrintListener([&](const std::string& line) { printed += line; });
  use("zuvimissing ! video/x-raw");
  Rig rig(back());
  rig.session->startRunning();
  EXPECT_TRUE(time.waitUntil([&] { return !rig.session->isRunning(); }));
  setPrintListener(nullptr);
  EXPECT_THAT(printed, ::testing::HasSubstr("zuvimissing"));
  EXPECT_THAT(printed, ::testing::HasSubstr("package gstreamer1.0-plugins-good"));
}

} // namespace
} // namespace zuvi
