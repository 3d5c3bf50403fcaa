#include "platform/AVFoundation/DeviceAccess.h"
#include "platform/AVFoundation/DevicePlace.h"
#include "platform/AVFoundation/DevicesGStreamer.h"
#include "platform/AVFoundation/PipelineGStreamer.h"
#include "platform/ImageIO/ImageFile.h"
#include "testing/AVFoundation/CameraFixture.h"
#include "testing/AVFoundation/MediaReaderGStreamer.h"

#include <sys/resource.h>
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

TEST_F(HostCameraTest, PermissionRoads) {
  const std::tuple<CameraPermission, Status, Status> roads[] = {
      {CameraPermission::Authorized, Status::Authorized, Status::Authorized},
      {CameraPermission::Denied, Status::Denied, Status::Denied},
      {CameraPermission::Restricted, Status::Restricted, Status::Restricted},
      {CameraPermission::Grant, Status::NotDetermined, Status::Authorized},
      {CameraPermission::Refuse, Status::NotDetermined, Status::Denied}};
  for (const auto& [permission, before, after] : roads) {
    SCOPED_TRACE(static_cast<int>(permission));
    auto cameras = simulated();
    cameras.permission = permission;
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
  using enum AVCaptureDevicePosition;
  const test::TemporaryFolder sys;
  const std::string port = "devices/pci0000:00/usb1/1-7", camera = port + "/1-7:1.0";
  std::filesystem::create_directories(sys.path(port + "/physical_location"));
  const std::tuple<std::string, const char*, const char*, AVCaptureDevicePosition,
                   std::optional<bool>>
      rows[] = {{camera, "fixed\n", "front\n", Front, true},
                {camera, "removable\n", "back\n", Unspecified, false},
                {camera, "unknown\n", "back\n", Unspecified, std::nullopt},
                {"devices/platform/isp", "", "", Unspecified, true},
                {"devices/virtual/loop", "", "", Unspecified, false}};
  for (const auto& [device, removable, panel, position, builtIn] : rows) {
    SCOPED_TRACE(device + removable);
    sys.write(port + "/removable", removable);
    sys.write(port + "/physical_location/panel", panel);
    const std::string link = sys.path("class/video4linux/video0");
    std::filesystem::remove_all(link);
    std::filesystem::create_directories(sys.path(device));
    std::filesystem::create_directories(link);
    std::filesystem::create_directory_symlink(sys.path(device), link + "/device");
    const auto place = placeOf(sys.path("video0"), sys.path());
    EXPECT_EQ(place.position, position);
    EXPECT_EQ(place.builtIn, builtIn);
  }
  EXPECT_EQ(placeOf("/dev/nothing", sys.path()).builtIn, std::nullopt);
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

TEST(CameraLibraryDeathTest, StartsWhereItsListOfPluginsCannotBeStored) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const test::TemporaryFolder folder;
  const auto start = [&] {
    ::setenv("GST_REGISTRY", folder.path("registry").c_str(), 1);
    const rlimit limit{30000, RLIM_INFINITY}; // the list has twenty times as much
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::_exit(startGStreamer() ? 0 : 1);
  };
  EXPECT_EXIT(start(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace zuvi
