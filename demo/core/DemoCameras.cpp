#include "demo/core/DemoCameras.h"

#include "platform/AVFoundation/AVCaptureDevice.h"
#include "platform/Dispatch/DispatchQueue.h"
#include "platform/Foundation/Make.h"
#include "platform/Foundation/Print.h"

namespace zuvi::demo {

namespace {

// Seconds in which a machine that has cameras comes to list them; a person takes longer to the
// first screen with one.
constexpr double lookAgainAfter = 1;

void install(const HostCameras& cameras) {
  AVCaptureDevice::setProvider(make<HostCameraProvider>(cameras));
}

HostCameras drawnCameras() {
  HostCameras cameras;
  cameras.front.kind = cameras.back.kind = CameraSourceDescription::Kind::Simulated;
  return cameras;
}

/// Aside, since drivers take their time. Cameras that may not be used are there all the same.
void lookForCameras(std::function<void()> noneFound) {
  DispatchQueue::global().async([noneFound = std::move(noneFound)] {
    if (AVCaptureDevice::authorizationStatus() == AVAuthorizationStatus::Authorized &&
        AVCaptureDevice::devices().empty())
      DispatchQueue::main().async(noneFound);
  });
}

} // namespace

void installCameras(const Options& options) {
  if (options.frontCamera || options.backCamera || options.permission) {
    HostCameras cameras;
    if (options.cameras == Cameras::Drawn) cameras = drawnCameras();
    if (options.frontCamera) cameras.front = *options.frontCamera;
    if (options.backCamera) cameras.back = *options.backCamera;
    cameras.permission = options.permission.value_or(CameraPermission::Authorized);
    return install(cameras);
  }
  if (options.cameras == Cameras::Drawn) return install(drawnCameras());
  lookForCameras([] {
    DispatchQueue::main().asyncAfter(lookAgainAfter, [] {
      lookForCameras([] {
        print("This machine has no camera: drawn ones stand in for it, as with --cameras drawn");
        install(drawnCameras());
      });
    });
  });
}

} // namespace zuvi::demo
