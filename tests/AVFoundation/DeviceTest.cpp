#include "platform/AVFoundation/DeviceAccess.h"
#include "platform/AVFoundation/DevicePlace.h"
#include "platform/AVFoundation/DevicesGStreamer.h"
#include "platform/ImageIO/ImageFile.h"
#include "tests/AVFoundation/CameraFixture.h"
#include "tests/AVFoundation/MediaReaderGStreamer.h"

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

namespace zuvi {
namespace {

using Status = AVAuthorizationStatus;

class HostCameraTest : public CameraTest {
protected:
  bool ask() {
    std::atomic<int> answer = -1;
    AVCaptureDevice::requestAccess([&](bool granted) {
      EXPECT_FALSE(DispatchQueue::main().isCurrent());
      answer = granted;
    });
    EXPECT_TRUE(time.waitUntil([&] { return answer >= 0; }));
    return answer == 1;
  }
};

TEST_F(HostCameraTest, SaysWhatIsWrongWithASource) {
  for (const auto& text : {std::string("Simulated"), folder.path("missing.mov"), folder.path(),
                           folder.write("empty", "")}) {
    const auto line = std::get<Error>(parseCameraSource(text)).description;
    EXPECT_NE(line.find("'" + text + "'"), std::string::npos) << line;
  }
}

TEST_F(HostCameraTest, PermissionRoads) {
  const std::tuple<const char*, Status, Status> roads[] = {
      {"authorized", Status::Authorized, Status::Authorized},
      {"denied", Status::Denied, Status::Denied},
      {"restricted", Status::Restricted, Status::Restricted},
      {"grant", Status::NotDetermined, Status::Authorized},
      {"refuse", Status::NotDetermined, Status::Denied}};
  for (const auto& [name, before, after] : roads) {
    SCOPED_TRACE(name);
    auto cameras = simulated();
    cameras.permission = std::get<CameraPermission>(parseCameraPermission(name));
    useHost(cameras);
    EXPECT_EQ(AVCaptureDevice::authorizationStatus(), before);

    // An input made while the user is still to be asked gives pictures only after a yes.
    Rig rig(back());
    EXPECT_EQ(rig.input != nullptr,
              before == Status::Authorized || before == Status::NotDetermined);
    rig.session->startRunning();
    const auto still = rig.input ? rig.askStill() : nullptr;
    if (before == Status::NotDetermined) {
      film(0.3);
      EXPECT_FALSE(still->done());
    }
    EXPECT_EQ(ask(), after == Status::Authorized);
    EXPECT_EQ(AVCaptureDevice::authorizationStatus(), after);
    if (!still) continue;
    ASSERT_TRUE(time.waitUntil([&] { return still->done(); }));
    EXPECT_EQ(still->jpeg.has_value(), after == Status::Authorized);
    EXPECT_EQ(rig.session->isRunning(), after == Status::Authorized);
  }
  EXPECT_TRUE(std::holds_alternative<Error>(parseCameraPermission("yes")));
}

TEST_F(HostCameraTest, SidesDifferAndMayBeMissing) {
  useHost(simulated());
  std::vector<int> colours;
  for (auto side : {AVCaptureDevicePosition::Front, AVCaptureDevicePosition::Back}) {
    Rig rig(device(side));
    rig.session->startRunning();
    const auto image = decodeImage(take(rig)->jpeg.value());
    EXPECT_EQ(std::pair(image->width(), image->height()), std::pair(1280, 720));
    colours.push_back(image->pixels().bytes()[0] / 16);
  }
  EXPECT_NE(colours[0], colours[1]);
  auto cameras = simulated();
  cameras.front.kind = CameraSourceDescription::Kind::None;
  useHost(cameras);
  EXPECT_FALSE(device(AVCaptureDevicePosition::Front));
}

TEST_F(HostCameraTest, FilmIsShownOverAndOver) {
  // A short film of the simulated camera is the next camera's source.
  useHost(simulated());
  auto listener = std::make_shared<FilmListener>();
  ASSERT_TRUE(shoot(*running(), folder.path("loop.mov"), 0.4, listener));
  useHost(backFrom(folder.path("loop.mov")));
  EXPECT_TRUE(back()->isSimulated());
  const auto rig = running();
  ASSERT_TRUE(shoot(*rig, folder.path("long.mov"), 1.6, listener)); // four rounds
  EXPECT_FALSE(listener->ends()[1].error);
  EXPECT_TRUE(rig->session->isRunning());
  const auto facts = readFilm(folder.path("long.mov"));
  EXPECT_NEAR(facts.seconds, 1.6, 0.5) << "two rounds are 0.8";
  EXPECT_GT(facts.frames, 20) << "it pauses between the rounds";
}

TEST_F(HostCameraTest, FileThatIsNoFilmEndsTheRun) {
  useHost(backFrom(folder.write("text.mov", std::string(5000, 'x'))));
  Rig rig(back());
  rig.session->startRunning();
  EXPECT_TRUE(time.waitUntil([&] { return !rig.session->isRunning(); }));

  auto gone = back();
  std::filesystem::remove(folder.path("text.mov"));
  EXPECT_FALSE(AVCaptureDeviceInput::withDevice(gone));
}

TEST(DeviceTest, PositionIsTheDriversWord) {
  startGStreamer();
  using Position = AVCaptureDevicePosition;
  const std::pair<std::string, Position> rows[] = {
      {"api.libcamera.location=(string)front", Position::Front},
      {"api.libcamera.Location=(string)CameraLocationBack", Position::Back},
      {"device.position=(string)Front", Position::Front},
      {"api.libcamera.location=(string)external", Position::Unspecified},
      {"device.path=(string)/dev/video0", Position::Unspecified}};
  for (const auto& [text, position] : rows) {
    auto* properties = gst_structure_from_string(("p, " + text).c_str(), nullptr);
    EXPECT_EQ(positionOf(properties), position) << text;
    gst_structure_free(properties);
  }
}

/// "NAME=side" of each listed camera, in the order of the list.
std::string sides(const std::vector<CameraCandidate>& cameras) {
  std::string text;
  for (const auto& camera : assignSides(cameras)) {
    const auto side = camera.position;
    text += camera.uniqueID + (side == AVCaptureDevicePosition::Front  ? "=front "
                               : side == AVCaptureDevicePosition::Back ? "=back "
                                                                       : "=? ");
  }
  return text;
}

TEST(DeviceTest, SidesAreServedAsAPersonExpects) {
  using enum AVCaptureDevicePosition;
  const CameraCandidate lid{"lid", "", Unspecified, true}, usb{"usb", "", Unspecified, false},
      any{"any", "", Unspecified, std::nullopt}, any2{"any2", "", Unspecified, std::nullopt},
      front{"front", "", Front, true}, back{"back", "", Back, true},
      infrared{"infrared", "", Unspecified, true, false};
  const std::pair<std::vector<CameraCandidate>, const char*> rows[] = {
      {{}, ""},
      {{usb}, "usb=front usb=back "},
      {{back, front}, "front=front back=back "},
      {{usb, lid}, "lid=front usb=back "},
      {{any, usb}, "any=front usb=back "},
      {{any, lid}, "lid=front any=back "},
      {{any, any2}, "any=front any2=back "},
      {{front, any}, "front=front any=back "},
      {{any, back}, "any=front back=back "},
      {{front}, "front=front front=back "},
      {{front, front, usb, any}, "front=front usb=back front=front any=? "},
      {{infrared, lid}, "lid=front lid=back infrared=? "},
      {{infrared}, "infrared=front infrared=back "}};
  for (const auto& [cameras, expected] : rows)
    EXPECT_EQ(sides(cameras), expected);
}

TEST(DeviceTest, PlaceIsWhatTheKernelKnows) {
  const test::TemporaryFolder sys;
  const auto port = std::string("devices/pci0000:00/usb1/1-7");
  const auto camera = [&](const char* name, const std::string& place) {
    std::filesystem::create_directories(sys.path(place));
    std::filesystem::create_directories(sys.path(std::string("class/video4linux/") + name));
    std::filesystem::create_directory_symlink(
        sys.path(place), sys.path(std::string("class/video4linux/") + name + "/device"));
    return placeOf(sys.path(name), sys.path());
  };
  std::filesystem::create_directories(sys.path(port + "/physical_location"));
  sys.write(port + "/removable", "fixed\n");
  sys.write(port + "/physical_location/panel", "front\n");
  const auto lid = camera("video0", port + "/1-7:1.0");
  EXPECT_EQ(lid.position, AVCaptureDevicePosition::Front);
  EXPECT_EQ(lid.builtIn, true);
  sys.write(port + "/physical_location/panel", "back\n");
  sys.write(port + "/removable", "removable\n");
  const auto plugged = camera("video1", port + "/1-7:1.0");
  EXPECT_EQ(plugged.position, AVCaptureDevicePosition::Unspecified);
  EXPECT_EQ(plugged.builtIn, false);
  sys.write(port + "/removable", "unknown\n");
  EXPECT_EQ(camera("video2", port + "/1-7:1.0").builtIn, std::nullopt);
  EXPECT_EQ(camera("video3", "devices/platform/isp").builtIn, true);
  EXPECT_EQ(camera("video4", "devices/virtual/loop").builtIn, false);
  EXPECT_EQ(placeOf("/dev/nothing", sys.path()).builtIn, std::nullopt);
}

/// A listed camera whose class only makes elements, as GStreamer's own of the kernel's cameras.
struct ListedCamera {
  GstDevice parent;
};
struct ListedCameraClass {
  GstDeviceClass parent;
};
G_DEFINE_TYPE(ListedCamera, listed_camera, GST_TYPE_DEVICE) // NOLINT: the macro's own code
void listed_camera_init(ListedCamera*) {}                   // NOLINT: named by the macro
void listed_camera_class_init(ListedCameraClass* type) {    // NOLINT: named by the macro
  type->parent.create_element = [](GstDevice*, const char* name) {
    return gst_element_factory_make("v4l2src", name);
  };
}

FoundCamera listed(const char* offers) {
  startGStreamer();
  const GstMini<GstCaps> caps(gst_caps_from_string(offers));
  auto* properties = gst_structure_new("p", "device.path", G_TYPE_STRING, "/dev/video7", nullptr);
  auto* device = GST_DEVICE(g_object_new(listed_camera_get_type(), "caps", caps.get(), "properties",
                                         properties, "device-class", "Video/Source",
                                         nullptr)); // without a name to show
  gst_structure_free(properties);
  return describeDevice({GST_DEVICE(gst_object_ref_sink(device)), GstUnref()});
}

TEST(DeviceTest, ListedCameraIsTheOneThatIsOpened) {
  const auto camera = listed("image/jpeg,width=1280,height=720,framerate=30/1");
  EXPECT_EQ(camera.element.factory, "v4l2src");
  const GstRef<GstElement> source(
      GST_ELEMENT(gst_object_ref_sink(gst_element_factory_make("v4l2src", nullptr))));
  camera.element.configure(source.get());
  char* path = nullptr;
  g_object_get(source.get(), "device", &path, nullptr);
  EXPECT_STREQ(path, "/dev/video7");
  g_free(path);
  EXPECT_EQ(listed("video/x-raw(memory:DMABuf),width=640,height=480").element.factory, "")
      << "one without usable pictures is passed over";
}

TEST(DeviceTest, InfraredCamerasHaveNoColour) {
  startGStreamer();
  const std::pair<const char*, bool> rows[] = {
      {"video/x-raw,format=GRAY8,width=640,height=480;video/x-raw,format=GRAY16_LE", false},
      {"video/x-raw,format=GRAY8,width=640;video/x-raw,format=YUY2,width=640", true},
      {"image/jpeg,width=640", true}};
  for (const auto& [offers, colour] : rows) {
    const GstMini<GstCaps> caps(gst_caps_from_string(offers));
    EXPECT_EQ(hasColour(caps.get()), colour) << offers;
  }
  EXPECT_TRUE(hasColour(nullptr));
}

TEST_F(HostCameraTest, CannotGrantWhatTheSystemForbids) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto device = folder.write("video0", "");
  ::chmod(device.c_str(), 0);
  ::chmod(folder.path().c_str(), 0755);
  HostCameras cameras;
  cameras.back = {CameraSourceDescription::Kind::Device, device};
  EXPECT_EXIT(
      {
        if (::setuid(65534) != 0 && ::geteuid() == 0) ::_exit(2); // root may open everything
        useHost(cameras);
        bool denied = AVCaptureDevice::authorizationStatus() == Status::Denied;
        HostCameraProvider asked({{}, cameras.back, CameraPermission::Grant});
        asked.requestAccess([&](bool granted) { denied &= !granted; });
        ::_exit(denied && !AVCaptureDeviceInput::withDevice(back()) ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST(DeviceTest, DeniedWhenNoCameraMayBeOpened) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(deviceAuthorization(folder.path()), Status::Authorized) << "there is none to deny";
  EXPECT_EQ(deviceAuthorization(folder.path("missing")), Status::Authorized);
  // Nobody may open what leads nowhere, not even root.
  std::filesystem::create_symlink("nowhere", folder.path("video0"));
  folder.write("null", "");
  EXPECT_EQ(deviceAuthorization(folder.path()), Status::Denied);
  folder.write("video1", "");
  EXPECT_EQ(deviceAuthorization(folder.path()), Status::Authorized);
}

} // namespace
} // namespace zuvi
