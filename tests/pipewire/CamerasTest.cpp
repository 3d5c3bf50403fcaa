#include "platform/AVFoundation/SystemCameraProvider.h"
#include "platform/ImageIO/ImageFile.h"
#include "tests/AVFoundation/CameraFixture.h"
#include "tests/AVFoundation/MediaReaderGStreamer.h"
#include "tests/pipewire/MediaServer.h"

namespace zuvi {
namespace {

using Position = AVCaptureDevicePosition;
using test::VirtualCamera;

/// The machine's cameras as a host without a provider of its own gets them.
class PipeWireTest : public CameraTest {
protected:
  PipeWireTest() {
    AVCaptureDevice::setProvider(make<SystemCameraProvider>(std::map<std::string, Position>{},
                                                            SystemCameraProvider::Access::Devices));
    AVCaptureDevice::discover();
  }
  /// Whether that camera comes to serve that side.
  bool serves(Position side, const std::string& name) {
    return time.waitUntil([&] {
      const auto found = device(side);
      return found && found->uniqueID() == name;
    });
  }
  /// Which of red, green and blue the still's middle is.
  static std::string colourOf(const Data& jpeg) {
    const auto image = decodeImage(jpeg);
    if (!image) return "nothing";
    const std::size_t middle =
        std::size_t(image->height() / 2) * image->width() + image->width() / 2;
    const Data pixels = image->pixels();
    const auto* pixel = pixels.bytes() + middle * 4;
    const int blue = pixel[0], green = pixel[1], red = pixel[2];
    if (red > green && red > blue) return "red";
    return green > blue ? "green" : "blue";
  }
  /// A running session on the camera of that side.
  std::unique_ptr<Rig> start(Position side) {
    auto rig = std::make_unique<Rig>(device(side));
    rig->session->observer = [this](AVCaptureSessionEvent event) {
      (event == AVCaptureSessionEvent::Failed ? failures : firstPictures)++;
    };
    rig->session->startRunning();
    return rig;
  }

  int failures = 0, firstPictures = 0;
};

TEST_F(PipeWireTest, FrontAndBackRunTogetherWhileTheListIsAsked) {
  VirtualCamera front("Front", {"front", "red"}), back("Back", {"back", "blue"});
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
    EXPECT_EQ(colourOf(take(*documents)->jpeg.value()), "blue");
    EXPECT_EQ(colourOf(take(*recorder)->jpeg.value()), "red");
  }
  const auto path = folder.path("film.mov");
  ASSERT_TRUE(shoot(*recorder, path, 1, listener));
  EXPECT_NEAR(readFilm(path).seconds, 1, 0.2);
  EXPECT_EQ(failures, 0);
}

TEST_F(PipeWireTest, OnlyCameraServesBothSidesUntilAnotherComes) {
  VirtualCamera only("Only", {"", "green"});
  ASSERT_TRUE(serves(Position::Front, "Only") && serves(Position::Back, "Only"));
  const auto recorder = start(Position::Front), documents = start(Position::Back);
  EXPECT_EQ(colourOf(take(*documents)->jpeg.value()), "green");
  EXPECT_EQ(colourOf(take(*recorder)->jpeg.value()), "green");
  VirtualCamera external("External", {"external", "blue"});
  EXPECT_TRUE(serves(Position::Back, "External"));
  EXPECT_TRUE(serves(Position::Front, "Only"));
}

TEST_F(PipeWireTest, CameraThatVanishesWhileFilmingWorksAgainWhenItIsBack) {
  std::optional<VirtualCamera> camera;
  const auto listener = std::make_shared<FilmListener>();
  for (int round = 1; round <= 3; round++) {
    camera.emplace("Webcam", VirtualCamera::Traits{});
    ASSERT_TRUE(serves(Position::Front, "Webcam"));
    const auto rig = start(Position::Front);
    auto layer = make<AVCaptureVideoPreviewLayer>(rig->session);
    const Surface surface(layer);
    const auto first = take(*rig);
    ASSERT_TRUE(first->jpeg) << round << first->error->description << rig->session->isRunning();
    rig->film->startRecording(folder.path("film.mov"), listener);
    film(0.5);
    const auto waiting = rig->askStill();
    camera->unplug();
    ASSERT_TRUE(time.waitUntil([&] { return failures == round; }));
    EXPECT_FALSE(rig->session->isRunning());
    ASSERT_TRUE(
        time.waitUntil([&] { return waiting->done() && int(listener->ends().size()) == round; }));
    ASSERT_TRUE(time.waitUntil([&] { return AVCaptureDevice::devices().empty(); }));
    EXPECT_FALSE(AVCaptureDeviceInput::withDevice(rig->input->device()));
    // The same session goes on with the camera that is back.
    camera.emplace("Webcam", VirtualCamera::Traits{"", "blue"});
    ASSERT_TRUE(serves(Position::Front, "Webcam"));
    rig->session->removeInput();
    ASSERT_TRUE(rig->session->addInput(AVCaptureDeviceInput::withDevice(device(Position::Front))));
    rig->session->startRunning();
    const auto still = take(*rig);
    ASSERT_TRUE(still->jpeg) << round << still->error->description;
    EXPECT_EQ(colourOf(*still->jpeg), "blue");
    camera.reset();
    ASSERT_TRUE(time.waitUntil([&] { return AVCaptureDevice::devices().empty(); }));
    failures = round;
  }
}

} // namespace
} // namespace zuvi
