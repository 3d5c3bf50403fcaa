#include "platform/AVFoundation/ScriptedCamera.h"
#include "platform/AVFoundation/AVError.h"
#include "tests/AVFoundation/CameraFixture.h"

#include <filesystem>

namespace zuvi {
namespace {

class ScriptedCameraTest : public CameraTest {
protected:
  ScriptedCameraTest() { AVCaptureDevice::setProvider(cameras); }

  std::shared_ptr<ScriptedCameraProvider> cameras = make<ScriptedCameraProvider>();
  std::shared_ptr<ScriptedCamera> camera = cameras->back;
  std::shared_ptr<FilmListener> listener = std::make_shared<FilmListener>();
};

TEST_F(ScriptedCameraTest, AnswersStillsOnItsQueueOnly) {
  camera->still = Data(std::string("picture"));
  Rig rig(back());
  rig.session->startRunning();
  auto still = rig.askStill();
  EXPECT_FALSE(still->done()) << "never within the call";
  time.settle();
  EXPECT_EQ(still->jpeg.value().string(), "picture");
  EXPECT_TRUE(still->onMain);

  camera->still = std::nullopt;
  auto absent = rig.askStill();
  camera->answersStills = false;
  auto waiting = rig.askStill();
  auto stopped = rig.askStill();
  time.settle();
  EXPECT_TRUE(absent->error);
  EXPECT_FALSE(waiting->done());
  rig.session->stopRunning();
  time.settle();
  EXPECT_TRUE(waiting->error && stopped->error);
  EXPECT_EQ(camera->stills, 4);
  EXPECT_EQ(camera->starts, 1);
  EXPECT_EQ(camera->stops, 1);
  auto late = rig.askStill();
  time.settle();
  EXPECT_EQ(late->error.value().code, AVErrorSessionNotRunning);
  EXPECT_TRUE(late->onMain);
}

TEST_F(ScriptedCameraTest, WritesFilmsInVirtualTime) {
  camera->film = Data(std::string("moving"));
  Rig rig(back());
  rig.session->startRunning();
  rig.film->startRecording(folder.path("1.mov"), listener);
  EXPECT_TRUE(rig.film->isRecording());
  time.advance(7);
  EXPECT_TRUE(listener->ends().empty());
  rig.film->stopRecording();
  time.settle();
  ASSERT_EQ(listener->ends().size(), 1U);
  EXPECT_FALSE(listener->ends()[0].error);
  EXPECT_EQ(test::TemporaryFolder::read(folder.path("1.mov")), "moving");

  rig.film->maxRecordedDuration = 3;
  rig.film->startRecording(folder.path("2.mov"), listener);
  time.advance(3.1);
  ASSERT_EQ(listener->ends().size(), 2U);
  EXPECT_EQ(listener->ends()[1].error.value().code, AVErrorMaximumDurationReached);
  EXPECT_TRUE(std::filesystem::exists(folder.path("2.mov")));
  EXPECT_EQ(camera->films.size(), 2U);
  EXPECT_EQ(camera->filmsStopped, 1);
}

TEST_F(ScriptedCameraTest, FilmsThatLeaveNothing) {
  Rig rig(back());
  rig.session->startRunning();
  rig.film->startRecording(folder.path("1.mov"), listener);
  rig.film->stopRecording(); // without pictures
  time.settle();
  EXPECT_EQ(listener->ends().at(0).error.value().code, AVErrorNoDataCaptured);

  camera->film = Data(std::string("moving"));
  rig.film->startRecording(folder.path("2.mov"), listener);
  rig.film->cancelRecording();
  rig.film->startRecording(folder.path("3.mov"), listener);
  rig.film->stopRecording();
  rig.film->cancelRecording(); // the file is there, the call is not
  time.settle();
  EXPECT_EQ(listener->ends().size(), 1U);
  rig.film->startRecording(folder.path("4.mov"), listener);
  rig.session.reset();
  time.settle();
  EXPECT_EQ(listener->ends().size(), 2U);
  for (int i = 1; i <= 4; i++)
    EXPECT_FALSE(std::filesystem::exists(folder.path(std::to_string(i) + ".mov"))) << i;
  EXPECT_EQ(camera->filmsDiscarded, 2);
  EXPECT_FALSE(camera->isRunning());
}

TEST_F(ScriptedCameraTest, CamerasThatFail) {
  camera->opens = false;
  EXPECT_FALSE(AVCaptureDeviceInput::withDevice(back()));
  camera->opens = true;
  camera->fails = true;
  Rig rig(back());
  rig.session->startRunning();
  EXPECT_TRUE(rig.session->isRunning());
  time.settle();
  EXPECT_FALSE(rig.session->isRunning());

  camera->fails = false;
  rig.session->startRunning();
  rig.film->startRecording(folder.path("film.mov"), listener);
  camera->film = Data(std::string("half"));
  camera->unplug();
  time.settle();
  EXPECT_EQ(listener->ends().at(0).error.value().code, AVErrorDeviceWasDisconnected);
  EXPECT_FALSE(rig.session->isRunning());
  EXPECT_EQ(camera->starts, 2);
  cameras->back = nullptr;
  EXPECT_FALSE(back());
  EXPECT_TRUE(device(AVCaptureDevicePosition::Front));
}

TEST_F(ScriptedCameraTest, ShowsFramesAndAsksForPermission) {
  Rig rig(back());
  auto layer = make<AVCaptureVideoPreviewLayer>(rig.session);
  const auto picture =
      CGImage::fromPixels(Data(std::string(16, '\xff')), 2, 2, 8, CGImage::Format::BGRA);
  rig.session->startRunning();
  camera->showFrame(picture); // no surface
  time.settle();
  EXPECT_FALSE(layer->contents());
  Surface surface(layer);
  ASSERT_TRUE(time.waitUntil([&] {
    camera->showFrame(picture);
    time.settle();
    return layer->contents() == picture;
  }));

  cameras->status = AVAuthorizationStatus::NotDetermined;
  cameras->answersRequests = false;
  std::vector<bool> answers;
  AVCaptureDevice::requestAccess([&](bool granted) { answers.push_back(granted); });
  time.advance(60);
  EXPECT_TRUE(answers.empty());
  cameras->grants = false;
  cameras->answerRequests();
  time.settle();
  EXPECT_EQ(answers, std::vector{false});
  EXPECT_EQ(AVCaptureDevice::authorizationStatus(), AVAuthorizationStatus::Denied);
  EXPECT_EQ(cameras->requests, 1);
}

} // namespace
} // namespace zuvi
