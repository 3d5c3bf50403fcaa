#include "testing/AVFoundation/MediaReaderGStreamer.h"
#include "tests/pipewire/PipeWireFixture.h"

namespace zuvi {
namespace {

using test::VirtualCamera;

TEST_F(PipeWireTest, FrontAndBackRunTogetherWhileTheListIsAsked) {
  const VirtualCamera front("Front", {"front", "red"}), back("Back", {"back", "blue"});
  ASSERT_TRUE(serves(Position::Front, "Front") && serves(Position::Back, "Back"));
  EXPECT_FALSE(device(Position::Front)->isSimulated());
  const auto recorder = start(Position::Front);
  const auto listener = std::make_shared<FilmListener>();
  ASSERT_TRUE(warm(*recorder));
  EXPECT_EQ(firstPictures, 1);
  for (int round = 0; round < 5; round++) {
    const auto documents = start(Position::Back); // the recorder's session goes on below
    for (int i = 0; i < 20; i++)
      EXPECT_EQ(AVCaptureDevice::devices().size(), 2U);
    EXPECT_EQ(colourOf(*documents), "blue");
    EXPECT_EQ(colourOf(*recorder), "red");
  }
  const auto path = folder.path("film.mov");
  ASSERT_TRUE(shoot(*recorder, path, 1, listener));
  EXPECT_NEAR(readFilm(path).seconds, 1, 0.2);
  EXPECT_EQ(failures, 0);
}

TEST_F(PipeWireTest, OnlyCameraServesBothSidesUntilAnotherComes) {
  const VirtualCamera only("Only", {"", "green"});
  ASSERT_TRUE(serves(Position::Front, "Only") && serves(Position::Back, "Only"));
  const auto recorder = start(Position::Front), documents = start(Position::Back);
  EXPECT_EQ(colourOf(*documents), "green");
  EXPECT_EQ(colourOf(*recorder), "green");
  const VirtualCamera external("External", {"external", "blue"});
  EXPECT_TRUE(serves(Position::Back, "External"));
  EXPECT_TRUE(serves(Position::Front, "Only"));
}

TEST_F(PipeWireTest, CameraThatVanishesWhileFilmingWorksAgainWhenItIsBack) {
  std::optional<VirtualCamera> camera;
  const auto listener = std::make_shared<FilmListener>();
  auto& server = test::MediaServer::instance();
  for (int round = 1; round <= 3; round++) {
    SCOPED_TRACE(round);
    const bool restart = round == 2; // of the media server
    camera.emplace("Webcam", VirtualCamera::Traits{});
    ASSERT_TRUE(serves(Position::Front, "Webcam"));
    const auto rig = start(Position::Front);
    const auto layer = make<AVCaptureVideoPreviewLayer>(rig->session);
    const Surface surface(layer);
    ASSERT_TRUE(warm(*rig));
    rig->film->startRecording(folder.path("film.mov"), listener);
    film(0.5);
    const auto waiting = rig->askStill();
    restart ? server.stop() : camera->unplug();
    ASSERT_TRUE(time.waitUntil([&] { return failures == round; }));
    EXPECT_FALSE(rig->session->isRunning());
    ASSERT_TRUE(
        time.waitUntil([&] { return waiting->done() && int(listener->ends().size()) == round; }));
    ASSERT_TRUE(time.waitUntil([&] { return AVCaptureDevice::devices().empty(); }));
    EXPECT_FALSE(AVCaptureDeviceInput::withDevice(rig->input->device()));
    // The same session goes on with the camera that is back.
    camera.reset();
    if (restart) server.start();
    camera.emplace("Webcam", VirtualCamera::Traits{"", "blue"});
    ASSERT_TRUE(serves(Position::Front, "Webcam"));
    rig->session->removeInput();
    ASSERT_TRUE(rig->session->addInput(AVCaptureDeviceInput::withDevice(device(Position::Front))));
    rig->session->startRunning();
    EXPECT_EQ(colourOf(*rig), "blue");
    camera.reset();
    ASSERT_TRUE(time.waitUntil([&] { return AVCaptureDevice::devices().empty(); }));
    failures = round;
  }
}

} // namespace
} // namespace zuvi
