#include "demo/core/DemoCameras.h"
#include "platform/AVFoundation/AVCaptureDevice.h"
#include "platform/Dispatch/VirtualTime.h"
#include "platform/Foundation/Make.h"

#include <atomic>

#include <gtest/gtest.h>

namespace zuvi::demo {
namespace {

/// Counts how often somebody looks what it has.
struct CountingProvider final : CameraProvider {
  AVAuthorizationStatus authorizationStatus() override {
    looks++;
    return status;
  }
  void requestAccess(std::function<void(bool)> answer) override { answer(false); }
  std::vector<CameraDescription> devices() override { return cameras; }
  std::shared_ptr<CameraStream> open(const std::string&) override { return nullptr; }

  AVAuthorizationStatus status = AVAuthorizationStatus::Authorized;
  std::vector<CameraDescription> cameras;
  std::atomic<int> looks = 0;
};

class DemoCamerasTest : public testing::Test {
protected:
  ~DemoCamerasTest() override { AVCaptureDevice::setProvider(nullptr); }

  static bool drawn() {
    const auto devices = AVCaptureDevice::devices();
    return devices.size() == 2 && devices[0]->isSimulated() && devices[1]->isSimulated();
  }
  /// Looks on for a moment after the machine was asked that often.
  bool replacedAfter(int looks) {
    EXPECT_TRUE(time.waitUntil([&] {
      time.advance(0.2);
      return machine->looks == looks;
    }));
    return time.waitUntil(
        [&] {
          time.advance(0.2);
          return AVCaptureDevice::provider() != machine;
        },
        0.3);
  }
  VirtualTime time;
  std::shared_ptr<CountingProvider> machine = make<CountingProvider>();
};

TEST_F(DemoCamerasTest, AreDrawnOnlyWhereTheMachineHasNone) {
  AVCaptureDevice::setProvider(machine);
  installCameras({});
  EXPECT_TRUE(time.waitUntil([&] { return machine->looks == 1; }));
  EXPECT_EQ(AVCaptureDevice::provider(), machine) << "it was given no time to list them";
  EXPECT_TRUE(replacedAfter(2));
  EXPECT_TRUE(drawn());

  AVCaptureDevice::setProvider(machine);
  machine->cameras = {{"one", "One", AVCaptureDevicePosition::Unspecified, false}};
  installCameras({});
  EXPECT_FALSE(replacedAfter(3));

  machine->cameras.clear();
  machine->status = AVAuthorizationStatus::Denied;
  installCameras({});
  EXPECT_FALSE(replacedAfter(4)) << "a refusal is nothing to draw over";

  Options options;
  options.cameras = Cameras::Drawn;
  installCameras(options);
  EXPECT_TRUE(drawn());
}

} // namespace
} // namespace zuvi::demo
