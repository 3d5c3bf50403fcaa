#include "platform/AVFoundation/SystemCameraProvider.h"

#include "platform/AVFoundation/CameraPortal.h"
#include "platform/AVFoundation/CameraStreamGStreamer.h"
#include "platform/AVFoundation/DeviceAccess.h"
#include "platform/AVFoundation/DevicesGStreamer.h"
#include "platform/Foundation/Make.h"

#include <unistd.h>

namespace zuvi {

namespace {

constexpr const char* portalCamera = "portal";

/// The camera behind the portal. Its element closes the descriptor's copy that it makes.
SourceRecipe portalRecipe() {
  auto remote = std::shared_ptr<int>(new int(-1), [](int* descriptor) {
    if (*descriptor >= 0) ::close(*descriptor);
    delete descriptor;
  });
  CameraElement element;
  element.key = portalCamera;
  element.factory = "pipewiresrc";
  element.formats = [] { return nullptr; };
  element.configure = [remote](GstElement* source) {
    if (*remote < 0) *remote = CameraPortal::openCameras();
    g_object_set(source, "fd", *remote, nullptr);
  };
  return deviceRecipe(element);
}

} // namespace

SystemCameraProvider::SystemCameraProvider(std::map<std::string, AVCaptureDevicePosition> positions)
    : SystemCameraProvider(std::move(positions),
                           CameraPortal::isSandboxed() ? Access::Portal : Access::Devices) {}

SystemCameraProvider::SystemCameraProvider(std::map<std::string, AVCaptureDevicePosition> positions,
                                           Access access)
    : positions_(std::move(positions)), access_(access) {}

AVAuthorizationStatus SystemCameraProvider::authorizationStatus() {
  if (access_ == Access::Devices) return deviceAuthorization("/dev");
  std::lock_guard lock(mutex_);
  return portalAnswer_;
}

void SystemCameraProvider::requestAccess(std::function<void(bool)> answer) {
  const auto status = authorizationStatus();
  if (status != AVAuthorizationStatus::NotDetermined)
    return answer(status == AVAuthorizationStatus::Authorized);
  CameraPortal::requestAccess(
      [self = shared_from_this(), answer = std::move(answer)](bool granted) {
        {
          std::lock_guard lock(self->mutex_);
          self->portalAnswer_ =
              granted ? AVAuthorizationStatus::Authorized : AVAuthorizationStatus::Denied;
        }
        answer(granted);
      });
}

AVCaptureDevicePosition SystemCameraProvider::hostPosition(const std::string& id) const {
  auto found = positions_.find(id);
  return found == positions_.end() ? AVCaptureDevicePosition::Unspecified : found->second;
}

std::vector<CameraDescription> SystemCameraProvider::devices() {
  if (access_ == Access::Portal) {
    if (!CameraPortal::isCameraPresent()) return {};
    return {{portalCamera, "Camera", hostPosition(portalCamera), false}};
  }
  std::vector<CameraDescription> devices;
  for (auto& camera : findCameras()) {
    auto& position = camera.description.position;
    if (position == AVCaptureDevicePosition::Unspecified)
      position = hostPosition(camera.description.uniqueID);
    devices.push_back(std::move(camera.description));
  }
  return devices;
}

std::shared_ptr<CameraStream> SystemCameraProvider::open(const std::string& uniqueID) {
  const auto status = authorizationStatus();
  if (status == AVAuthorizationStatus::Denied) return nullptr;
  if (access_ == Access::Portal) {
    auto recipe = portalRecipe();
    recipe.permission = [self = shared_from_this()] { return self->authorizationStatus(); };
    return make<CameraStreamGStreamer>(std::move(recipe));
  }
  for (const auto& camera : findCameras()) {
    if (camera.description.uniqueID != uniqueID) continue;
    if (!camera.path.empty() && !mayOpenDevice(camera.path)) return nullptr;
    return make<CameraStreamGStreamer>(deviceRecipe(camera.element));
  }
  return nullptr;
}

} // namespace zuvi
