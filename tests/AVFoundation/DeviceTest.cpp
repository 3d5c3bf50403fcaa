#include "platform/AVFoundation/DeviceAccess.h"
#include "platform/AVFoundation/DevicesGStreamer.h"
#include "tests/AVFoundation/CameraFixture.h"

#include <filesystem>
#include <sys/syscall.h>
#include <unistd.h>

#include <gmock/gmock.h>

namespace zuvi {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using Status = AVAuthorizationStatus;

std::string chosen(const char* offers) {
  startGStreamer();
  GstMini<GstCaps> caps(gst_caps_from_string(offers));
  return chooseFormat(caps.get());
}

TEST(DeviceTest, ChoosesTheFormNearestToHigh) {
  // A usual camera: raw is slow where it is large.
  EXPECT_THAT(chosen("video/x-raw,format=YUY2,width=640,height=480,framerate={30/1,15/1};"
                     "video/x-raw,format=YUY2,width=1280,height=720,framerate=10/1;"
                     "image/jpeg,width=1920,height=1080,framerate=30/1;"
                     "image/jpeg,width=1280,height=720,framerate={60/1,30/1}"),
              AllOf(HasSubstr("image/jpeg,width=1280"), HasSubstr("framerate=30/1")));
  EXPECT_THAT(chosen("image/jpeg,width=1280,height=720,framerate=30/1;"
                     "video/x-raw,format=NV12,width=1280,height=720,framerate=30/1"),
              HasSubstr("video/x-raw"));
  EXPECT_THAT(chosen("video/x-raw,width=[16,4096],height=[16,4096],framerate=[1/1,120/1]"),
              HasSubstr("width=1280,height=720,framerate=30/1"));
  EXPECT_EQ(chosen("video/x-h264,width=1280,height=720,framerate=30/1"), "");
  EXPECT_EQ(chooseFormat(nullptr), "");
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

/// What `deviceAuthorization` says to a user without rights. Of a test that runs as root only this
/// thread gives them up, and only where `access` looks.
Status seenByNobody(const std::string& folder) {
  const bool root = ::getuid() == 0;
  if (root) ::syscall(SYS_setresuid, 65534, -1, -1);
  const auto status = deviceAuthorization(folder);
  if (root) ::syscall(SYS_setresuid, 0, -1, -1);
  return status;
}

TEST(DeviceTest, DeniedWhenNoCameraMayBeOpened) {
  test::TemporaryFolder folder;
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
  EXPECT_EQ(deviceAuthorization(folder.path()), Status::Authorized) << "there is none to deny";
  EXPECT_EQ(deviceAuthorization(folder.path("missing")), Status::Authorized);
  const auto first = folder.write("video0", "");
  const auto second = folder.write("video1", "");
  folder.write("null", "");
  std::filesystem::permissions(first, std::filesystem::perms::none);
  std::filesystem::permissions(second, std::filesystem::perms::none);
  EXPECT_EQ(seenByNobody(folder.path()), Status::Denied);
  std::filesystem::permissions(second, std::filesystem::perms(0666));
  EXPECT_EQ(seenByNobody(folder.path()), Status::Authorized);
}

} // namespace
} // namespace zuvi
