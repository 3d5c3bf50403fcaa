#include "demo/core/DemoCameras.h"

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Foundation/Make.h>
#include <ZuviSDK/Foundation/Print.h>

namespace zuvi::demo {

namespace {

constexpr double lookInterval = 0.5; // seconds

void install(const HostCameras& cameras) {
  AVCaptureDevice::setProvider(make<HostCameraProvider>(cameras));
}

HostCameras drawnCameras() {
  HostCameras cameras;
  cameras.front.kind = cameras.back.kind = CameraSourceDescription::Kind::Simulated;
  return cameras;
}

/// Looks twice a second until it is known what is there. Cameras that may not be used are there all
/// the same.
void drawWhereThereIsNone() {
  AVCaptureDevice::discover();
  if (!AVCaptureDevice::areDevicesKnown())
    return void(DispatchQueue::main().asyncAfter(lookInterval, drawWhereThereIsNone));
  if (AVCaptureDevice::authorizationStatus() != AVAuthorizationStatus::Authorized ||
      !AVCaptureDevice::devices().empty())
    return;
  print("This machine has no camera: drawn ones stand in for it, as with --cameras drawn");
  install(drawnCameras());
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
  if (options.program == Program::Demo) drawWhereThereIsNone();
}

} // namespace zuvi::demo
