#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include <ZuviSDK/Foundation/Make.h>
#include "demo/core/DemoCameras.h"
#include "testing/Dispatch/VirtualTime.h"

#include <gtest/gtest.h>

namespace zuvi::demo {
namespace {

/// A machine that finds out about its cameras when the test says so.
struct SlowMachine final : CameraProvider {
  AVAuthorizationStatus authorizationStatus() override { return status; }
  void requestAccess(std::function<void(bool)> answer) override { answer(false); }
  std::vector<CameraDescription> devices() override { return cameras; }
  bool areDevicesKnown() override { return known; }
  std::shared_ptr<CameraStream> open(const std::string&) override { return nullptr; }

  bool known = false;
  AVAuthorizationStatus status = AVAuthorizationStatus::Authorized;
  std::vector<CameraDescription> cameras;
};

TEST(DemoCamerasTest, AreDrawnOnlyWhereTheMachineHasNone) {
  VirtualTime time;
  const auto install = [&](bool authorized, std::vector<CameraDescription> cameras) {
    const auto machine = make<SlowMachine>();
    machine->cameras = std::move(cameras);
    if (!authorized) machine->status = AVAuthorizationStatus::Denied;
    AVCaptureDevice::setProvider(machine);
    installCameras({});
    time.advance(30);
    EXPECT_EQ(AVCaptureDevice::provider(), machine) << "it was given no time to list them";
    machine->known = true;
    time.advance(1);
    return AVCaptureDevice::provider() == machine ? "real" : "drawn";
  };
  const auto allDrawn = [] {
    const auto devices = AVCaptureDevice::devices();
    return devices.size() == 2 && devices[0]->isSimulated() && devices[1]->isSimulated();
  };
  EXPECT_STREQ(install(true, {}), "drawn");
  EXPECT_TRUE(allDrawn());
  EXPECT_STREQ(install(true, {{"one", "One", AVCaptureDevicePosition::Unspecified, false}}),
               "real");
  EXPECT_STREQ(install(false, {}), "real") << "a refusal is nothing to draw over";
  Options options;
  options.cameras = Cameras::Drawn;
  installCameras(options);
  EXPECT_TRUE(allDrawn());
  AVCaptureDevice::setProvider(nullptr);
}

} // namespace
} // namespace zuvi::demo
