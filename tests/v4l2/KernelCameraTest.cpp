// The road from a camera of the kernel to preview, still and film, and what happens when it is
// pulled out. Emulated machines are slow: a picture may be late, but it comes.

#include <ZuviSDK/AVFoundation/SystemCameraProvider.h>
#include "platform/ImageIO/ImageFile.h"
#include "testing/AVFoundation/CameraFixture.h"
#include "testing/AVFoundation/MediaReaderGStreamer.h"

#include <fstream>
#include <set>

namespace zuvi {
namespace {

constexpr double patience = 30;
constexpr const char *first = "/dev/video0", *second = "/dev/video1";
using Size = std::pair<int, int>;

class KernelCameraTest : public CameraTest {
protected:
  KernelCameraTest() {
    AVCaptureDevice::setProvider(make<SystemCameraProvider>(
        std::map<std::string, AVCaptureDevicePosition>{}, SystemCameraProvider::Access::Devices));
  }
  static std::shared_ptr<AVCaptureDevice> find(const std::string& path) {
    for (const auto& device : AVCaptureDevice::devices())
      if (device->uniqueID() == path) return device;
    return nullptr;
  }
  /// Once it is known.
  std::shared_ptr<AVCaptureDevice> camera(const std::string& path = first) {
    std::shared_ptr<AVCaptureDevice> found;
    if (time.waitUntil([&] { return (found = find(path)) != nullptr; }, patience)) return found;
    std::string listed;
    for (const auto& device : AVCaptureDevice::devices())
      listed += device->uniqueID() + " ";
    ADD_FAILURE() << path << " is not among: " << listed;
    return nullptr;
  }
  /// The next picture; a machine that is busy may need more than one attempt.
  std::shared_ptr<const CGImage> photograph(const Rig& rig) {
    for (int attempt = 0; attempt < 5; attempt++) {
      const auto asked = rig.askStill();
      if (time.waitUntil([&] { return asked->done(); }, patience) && asked->jpeg)
        return decodeImage(*asked->jpeg);
    }
    return nullptr;
  }
  /// Tells how long something took, for the one who runs this by hand.
  void note(const std::string& what) {
    const std::chrono::duration<double> since = std::chrono::steady_clock::now() - start_;
    std::printf("  %5.1f s  %s\n", since.count(), what.c_str());
  }
  static std::string text(const Size& size) {
    return std::to_string(size.first) + " x " + std::to_string(size.second);
  }

private:
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

Size sizeOf(const CGImage& image) {
  return {image.width(), image.height()};
}

TEST_F(KernelCameraTest, PreviewsPhotographsAndFilms) {
  for (const char* path : {first, second}) {
    const auto device = camera(path);
    ASSERT_TRUE(device);
    note(device->localizedName() + ", " + path);
    EXPECT_FALSE(device->isSimulated());
    Rig rig(device);
    auto layer = make<AVCaptureVideoPreviewLayer>(rig.session);
    Surface surface(layer);
    rig.session->startRunning();
    ASSERT_TRUE(time.waitUntil([&] { return layer->contents() != nullptr; }, patience));
    note("preview of " + text(sizeOf(*layer->contents())));
    EXPECT_EQ(sizeOf(*layer->contents()), Size(640, 480)) << "its largest with a film's rate";
    auto listener = std::make_shared<FilmListener>();
    rig.film->startRecording(folder.path("film.mov"), listener);
    film(7);
    rig.film->stopRecording();
    ASSERT_TRUE(time.waitUntil([&] { return !listener->ends().empty(); }, 2 * patience));
    EXPECT_FALSE(listener->ends()[0].error) << listener->ends()[0].error->description;
    const auto facts = readFilm(folder.path("film.mov"));
    note("film of " + std::to_string(facts.seconds) + " s, " + std::to_string(facts.frames) +
         " pictures");
    EXPECT_NEAR(facts.seconds, 7, 1);
    EXPECT_GE(facts.frames, 7);

    Rig document(device, false); // on the same camera
    document.session->startRunning();
    EXPECT_TRUE(time.waitUntil(
        [&] {
          const auto still = photograph(document);
          return still && sizeOf(*still) == Size(1280, 720);
        },
        patience))
        << "its largest at ten pictures a second or more";
    note("still of 1280 x 720");
  }
}

TEST_F(KernelCameraTest, WorksAgainAfterItWasPulledOut) {
  const std::string driver = "/sys/bus/platform/drivers/vivid/";
  const auto pulled = camera();
  ASSERT_TRUE(pulled);
  Rig rig(pulled);
  auto layer = make<AVCaptureVideoPreviewLayer>(rig.session);
  Surface surface(layer);
  rig.session->startRunning();
  ASSERT_TRUE(time.waitUntil([&] { return layer->contents() != nullptr; }, patience));
  auto listener = std::make_shared<FilmListener>();
  rig.film->startRecording(folder.path("film.mov"), listener);
  film(3);
  std::ofstream(driver + "unbind") << "vivid.0";
  ASSERT_TRUE(time.waitUntil([&] { return !rig.session->isRunning(); }, patience));
  ASSERT_TRUE(time.waitUntil([&] { return !listener->ends().empty(); }, 2 * patience));
  ASSERT_TRUE(listener->ends()[0].error);
  note("pulled out while filming: " + listener->ends()[0].error->description);
  EXPECT_GT(readFilm(folder.path("film.mov")).frames, 0) << "what was filmed can be seen";
  EXPECT_TRUE(time.waitUntil([] { return AVCaptureDevice::devices().empty(); }, patience));
  note("no camera is listed");

  // The kernel may give them other numbers.
  std::ofstream(driver + "bind") << "vivid.0";
  std::set<std::string> paths;
  ASSERT_TRUE(time.waitUntil(
      [&] {
        for (const auto& device : AVCaptureDevice::devices())
          paths.insert(device->uniqueID());
        return paths.size() == 2;
      },
      patience));
  for (const auto& path : paths) {
    Rig again(camera(path));
    ASSERT_TRUE(time.waitUntil(
        [&] {
          again.session->startRunning(); // where a device that has just come refuses
          return photograph(again) != nullptr;
        },
        patience));
    note("back as " + path + ", and gives pictures");
  }
}

} // namespace
} // namespace zuvi
