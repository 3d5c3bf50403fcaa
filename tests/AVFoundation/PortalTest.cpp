#include "platform/AVFoundation/CameraPortal.h"
#include "platform/AVFoundation/SystemCameraProvider.h"
#include "tests/AVFoundation/CameraFixture.h"
#include "tests/AVFoundation/FakePortalGio.h"

#include <unistd.h>

namespace zuvi {
namespace {

using Status = AVAuthorizationStatus;

class PortalTest : public CameraTest {
protected:
  std::shared_ptr<SystemCameraProvider> provider() {
    return make<SystemCameraProvider>(
        std::map<std::string, AVCaptureDevicePosition>{{"portal", AVCaptureDevicePosition::Back}},
        SystemCameraProvider::Access::Portal);
  }
  /// 1 granted, 0 refused, -1 no answer.
  int ask(SystemCameraProvider& from) {
    auto answer = std::make_shared<std::atomic<int>>(-1);
    from.requestAccess([answer](bool granted) { *answer = granted; });
    time.waitUntil([&] { return *answer >= 0; });
    return *answer;
  }
};

TEST_F(PortalTest, AnswersAreTheUsers) {
  FakePortal portal;
  for (bool grants : {true, false}) {
    portal.response = grants ? 0 : 1;
    auto cameras = provider();
    EXPECT_EQ(cameras->authorizationStatus(), Status::NotDetermined);
    EXPECT_EQ(ask(*cameras), grants);
    EXPECT_EQ(cameras->authorizationStatus(), grants ? Status::Authorized : Status::Denied);
    EXPECT_EQ(cameras->open("portal") != nullptr, grants);
    const int asked = portal.asked;
    EXPECT_EQ(ask(*cameras), grants) << "known by now";
    EXPECT_EQ(portal.asked, asked);
  }
}

TEST_F(PortalTest, ListsOneCameraAndHandsItOver) {
  FakePortal portal;
  const auto devices = provider()->devices();
  ASSERT_EQ(devices.size(), 1U);
  EXPECT_EQ(devices[0].position, AVCaptureDevicePosition::Back);
  const int descriptor = CameraPortal::openCameras();
  ASSERT_GE(descriptor, 0);
  char text[8] = {};
  EXPECT_EQ(::read(descriptor, text, 6), 6);
  EXPECT_STREQ(text, "remote");
  ::close(descriptor);
  portal.present = false;
  EXPECT_TRUE(provider()->devices().empty());
}

TEST_F(PortalTest, NoPortalIsANo) {
  {
    FakePortal portal;
    portal.response = -1; // the dialogue stays open until the portal is gone
    auto cameras = provider();
    auto answer = std::make_shared<std::atomic<int>>(-1);
    cameras->requestAccess([answer](bool granted) { *answer = granted; });
    EXPECT_TRUE(time.waitUntil([&] { return portal.asked > 0; }));
    EXPECT_EQ(*answer, -1);
    portal.leave();
    EXPECT_TRUE(time.waitUntil([&] { return *answer == 0; }));
  }
  auto cameras = provider(); // not even a bus
  EXPECT_EQ(ask(*cameras), 0);
  EXPECT_TRUE(cameras->devices().empty());
  EXPECT_EQ(CameraPortal::openCameras(), -1);
}

} // namespace
} // namespace zuvi
