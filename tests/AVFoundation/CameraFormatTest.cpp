#include "platform/AVFoundation/CameraFormatGStreamer.h"
#include "platform/AVFoundation/DevicesGStreamer.h"
#include "platform/AVFoundation/SourceRecipesGStreamer.h"
#include "platform/ImageIO/ImageFile.h"
#include "testing/AVFoundation/CameraFixture.h"
#include "testing/AVFoundation/MediaReaderGStreamer.h"
#include "testing/AVFoundation/RecipeProvider.h"
#include "testing/UIKit/Pixels.h"

#include <gmock/gmock.h>

namespace zuvi {
namespace {

using ::testing::HasSubstr;
using Size = std::pair<int, int>;

/// What the drivers of such cameras list.
constexpr const char* packedAndRaw = // raw is slow where it is large
    "video/x-raw,format=YUY2,width=640,height=480,framerate={(fraction)30/1,(fraction)15/1};"
    "video/x-raw,format=YUY2,width=1280,height=720,framerate=10/1;"
    "video/x-raw,format=YUY2,width=1920,height=1080,framerate=5/1;"
    "image/jpeg,width=1920,height=1080,framerate=30/1;"
    "image/jpeg,width=1280,height=720,framerate={(fraction)60/1,(fraction)30/1};"
    "image/jpeg,width=640,height=480,framerate=30/1";
constexpr const char* rawOnly = "video/x-raw,format=YUY2,width=640,height=480,framerate=30/1;"
                                "video/x-raw,format=YUY2,width=1280,height=720,framerate=10/1;"
                                "video/x-raw,format=YUY2,width=1920,height=1080,framerate=5/1";
constexpr const char* infrared = "video/x-raw,format=GRAY8,width=1280,height=720,framerate=30/1;"
                                 "video/x-raw,format=GRAY16_LE,width=640,height=480,framerate=30/1";
constexpr const char* greyFirst = "video/x-raw,format=GRAY8,width=1280,height=720,framerate=30/1;"
                                  "video/x-raw,format=YUY2,width=640,height=480,framerate=30/1";
constexpr const char* interlaced =
    "video/x-raw,format=UYVY,width=720,height=576,framerate=25/1,interlace-mode=interleaved;"
    "video/x-raw(format:Interlaced),format=UYVY,width=720,height=576,framerate=25/1,"
    "interlace-mode=alternate";
constexpr const char* bayer = "video/x-bayer,format=bggr16le,width=1280,height=720,framerate=30/1;"
                              "video/x-bayer,format=bggr,width=1280,height=720,framerate=30/1";
constexpr const char* driverMemory =
    "video/x-raw(memory:DMABuf),format=NV12,width=1280,height=720,framerate=30/1";
constexpr const char* driverMemoryFirst =
    "video/x-raw(memory:DMABuf),format=NV12,width=1280,height=720,framerate=30/1;"
    "video/x-raw,format=NV12,width=641,height=479,framerate=30/1";

/// What a camera of the kernel would do, without one: it gives bars of colours in the forms that it
/// offers, and in no other. `rotation`: degrees against the clock that straighten its pictures, if
/// its stream tells no `orientation`, such as "rotate-90".
std::function<std::string(CameraUse)> standIn(const std::string& offers, int rotation = 0,
                                              const std::string& orientation = {}) {
  startGStreamer();
  CameraElement element;
  element.factory = "videotestsrc is-live=true pattern=smpte100 ! ";
  if (offers.find("image/jpeg") != offers.npos) element.factory += "jpegenc ! ";
  if (!orientation.empty())
    element.factory += "taginject tags=image-orientation=" + orientation + " ! ";
  element.factory += "capsfilter caps=\"" + offers + "\" ! identity";
  element.formats = [offers] {
    return std::shared_ptr<GstCaps>(gst_caps_from_string(offers.c_str()), GstMiniUnref());
  };
  element.rotation = [=] { return orientation.empty() ? std::optional(rotation) : std::nullopt; };
  return deviceRecipe(element).launch;
}

class CameraFormatTest : public CameraTest {
protected:
  template <class... Facts> static void use(const Facts&... facts) {
    AVCaptureDevice::setProvider(make<RecipeProvider>(standIn(facts...)));
  }
  /// A still of the running rig; null when none comes.
  std::shared_ptr<const CGImage> photograph(const Rig& rig) {
    const auto still = take(rig);
    return still->jpeg ? decodeImage(*still->jpeg) : nullptr;
  }
  static Size sizeOf(const std::shared_ptr<const CGImage>& image) {
    return image ? Size(image->width(), image->height()) : Size();
  }
  /// How much redder a part of the picture is than another; places in parts of the whole.
  static int redder(const std::shared_ptr<const CGImage>& image, CGPoint here, CGPoint there) {
    const test::Pixels pixels(image);
    const auto red = [&](CGPoint at) {
      return pixels.at(at.x * image->width(), at.y * image->height()).red;
    };
    return red(here) - red(there);
  }
  /// A still and the preview of the back camera, while it films in that size.
  std::vector<std::shared_ptr<const CGImage>> picturesWithFilmOf(Size size) {
    const auto rig = running();
    auto layer = make<AVCaptureVideoPreviewLayer>(rig->session);
    Surface surface(layer);
    EXPECT_TRUE(time.waitUntil([&] { return layer->contents() != nullptr; }));
    const auto still = photograph(*rig);
    auto listener = std::make_shared<FilmListener>();
    EXPECT_TRUE(shoot(*rig, folder.path("film.mov"), 0.4, listener));
    const auto facts = readFilm(folder.path("film.mov"));
    EXPECT_GT(facts.frames, 3);
    EXPECT_EQ(Size(facts.width, facts.height), size);
    return {still, layer->contents()};
  }
  /// Whether the red bar is where it belongs, and the one of cyan.
  static bool isTrue(const std::shared_ptr<const CGImage>& image) {
    return redder(image, {0.786, 0.5}, {0.357, 0.5}) > 100;
  }
  void expectTurned(bool leftIsUp) {
    for (const auto& image : picturesWithFilmOf({480, 640})) {
      ASSERT_EQ(sizeOf(image), Size(480, 640));
      const double red = leftIsUp ? 0.786 : 0.214, cyan = leftIsUp ? 0.357 : 0.643;
      for (const double side : {0.2, 0.8})
        EXPECT_GT(redder(image, {side, red}, {side, cyan}), 100);
    }
  }
};

std::string chosen(const char* offers, CameraUse use = CameraUse::Film) {
  startGStreamer();
  GstMini<GstCaps> caps(gst_caps_from_string(offers));
  return chooseFormat(caps.get(), use);
}

TEST_F(CameraFormatTest, FilmIsNear720pAndStillsAreLarge) {
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {packedAndRaw, "image/jpeg,width=1280,height=720,framerate=30/1 ! jpegdec",
       "image/jpeg,width=1920,height=1080,framerate=30/1 ! jpegdec"},
      {rawOnly, "format=(string)YUY2,width=640,height=480,framerate=30/1",
       "width=1280,height=720,framerate=10/1"},
      // A capture card scales to any size; a size of its step is asked for.
      {"video/x-raw,format={UYVY,NV12},width=[16,4096,16],height=[16,4096,8],framerate=[1/1,120/1]",
       "width=1280,height=720,framerate=30/1", "width=1920,height=1080,framerate=30/1"},
      // What is larger than the eye needs comes at half the rate; too large is too much.
      {"image/jpeg,width=3840,height=2160,framerate={(fraction)30/1,(fraction)15/1};"
       "image/jpeg,width=8000,height=6000,framerate=10/1",
       "width=3840", "width=3840,height=2160,framerate=15/1"},
      {"video/x-raw,format=NV12,width=1280,height=720,interlace-mode={interleaved,progressive}",
       "interlace-mode=(string)progressive", "interlace-mode=(string)progressive"},
  };
  for (const auto& [offers, film, still] : rows) {
    EXPECT_THAT(chosen(offers), HasSubstr(film));
    EXPECT_THAT(chosen(offers, CameraUse::Stills), HasSubstr(still));
  }
  for (const char* unusable : {driverMemory, "video/x-h264,width=1280,height=720,framerate=30/1"})
    EXPECT_EQ(chosen(unusable), "");
}

TEST_F(CameraFormatTest, OnlyGreyIsNoColour) {
  startGStreamer();
  for (const char* offers : {infrared, greyFirst, bayer, packedAndRaw}) {
    const GstMini<GstCaps> caps(gst_caps_from_string(offers));
    EXPECT_EQ(hasColour(caps.get()), offers != infrared) << offers;
  }
  EXPECT_TRUE(hasColour(nullptr)) << "nobody knows";
}

TEST_F(CameraFormatTest, EveryFormGivesTruePictures) {
  const std::tuple<const char*, Size, bool> rows[] = {
      {packedAndRaw, {1280, 720}, true},     {rawOnly, {640, 480}, true},
      {greyFirst, {640, 480}, true},         {infrared, {1280, 720}, false},
      {interlaced, {720, 576}, true},        {bayer, {1280, 720}, true},
      {driverMemoryFirst, {641, 479}, true},
  };
  for (const auto& [offers, size, coloured] : rows) {
    SCOPED_TRACE(offers);
    use(offers);
    const auto pictures = picturesWithFilmOf({size.first & ~1, size.second & ~1});
    EXPECT_EQ(sizeOf(pictures[0]), size);
    for (const auto& image : pictures) {
      ASSERT_TRUE(image);
      EXPECT_EQ(isTrue(image), coloured);
    }
  }
}

TEST_F(CameraFormatTest, WhatCannotBeReadEndsTheRun) {
  use(driverMemory);
  Rig rig(back());
  rig.session->startRunning();
  EXPECT_TRUE(time.waitUntil([&] { return !rig.session->isRunning(); }));
}

TEST_F(CameraFormatTest, SensorAndStreamSayWhichWayIsUp) {
  // Packed pictures unfold to a form that cannot be turned as it is.
  for (const char* form : {"image/jpeg", "video/x-raw,format=NV12"}) {
    SCOPED_TRACE(form);
    const std::string offers = std::string(form) + ",width=640,height=480,framerate=30/1";
    use(offers, 90);
    expectTurned(false);
    use(offers, 270);
    expectTurned(true);
    use(offers, 0, "rotate-90");
    expectTurned(true);
  }
}

TEST_F(CameraFormatTest, PictureFileSaysHowItsCameraWasHeld) {
  use("video/x-raw,format=I420,width=640,height=480");
  auto jpeg = take(*running())->jpeg->string();
  // Exif with one entry, the orientation: the picture's left side is up.
  const std::string exif("\xff\xe1\0\x22"
                         "Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0"
                         "\0\0\0\0",
                         36);
  jpeg.insert(2, exif);
  useHost(backFrom(folder.write("held.jpg", jpeg)));
  expectTurned(true);
}

TEST_F(CameraFormatTest, PreviewOfTheFrontIsAMirrorAndPicturesAreNot) {
  for (const auto side : {AVCaptureDevicePosition::Front, AVCaptureDevicePosition::Back}) {
    AVCaptureDevice::setProvider(
        make<RecipeProvider>(standIn("video/x-raw,format=I420,width=320,height=240"), side));
    Rig rig(device(side));
    auto layer = make<AVCaptureVideoPreviewLayer>(rig.session);
    Surface surface(layer);
    rig.session->startRunning();
    ASSERT_TRUE(time.waitUntil([&] { return layer->contents() != nullptr; }));
    EXPECT_EQ(layer->contentsMirrored(), side == AVCaptureDevicePosition::Front);
    EXPECT_TRUE(isTrue(photograph(rig)));
    layer->connection()->automaticallyAdjustsVideoMirroring = false;
    layer->connection()->videoMirrored = side == AVCaptureDevicePosition::Back;
    EXPECT_TRUE(time.waitUntil(
        [&] { return layer->contentsMirrored() == (side == AVCaptureDevicePosition::Back); }));
  }
}

TEST_F(CameraFormatTest, StillsAreLargeWhileThePreviewIsSmall) {
  use(packedAndRaw);
  const auto recorder = running();
  auto listener = std::make_shared<FilmListener>();
  recorder->film->startRecording(folder.path("film.mov"), listener);
  Rig document(back(), false);
  document.session->startRunning();
  EXPECT_EQ(photograph(document)->width(), 1280) << "the camera is another's while that one films";
  recorder->film->stopRecording();
  ASSERT_TRUE(time.waitUntil([&] { return !listener->ends().empty(); }));
  EXPECT_FALSE(listener->ends()[0].error);

  // The recorder's session stays, as its screen does, below the document's.
  Rig next(back(), false);
  auto layer = make<AVCaptureVideoPreviewLayer>(next.session);
  Surface surface(layer);
  next.session->startRunning();
  document.session->stopRunning();
  EXPECT_TRUE(time.waitUntil([&] { return sizeOf(photograph(next)) == Size(1920, 1080); }));
  ASSERT_TRUE(time.waitUntil([&] { return layer->contents() != nullptr; }));
  EXPECT_EQ(sizeOf(layer->contents()), Size(1280, 720));
  next.session->stopRunning();
  EXPECT_TRUE(time.waitUntil([&] { return photograph(*recorder)->width() == 1280; }))
      << "it is the recorder's again";
}

} // namespace
} // namespace zuvi
