#include <ZuviSDK/AVFoundation/HostCameraProvider.h>

#include <ZuviSDK/Foundation/Make.h>
#include "platform/AVFoundation/CameraStreamGStreamer.h"
#include "platform/AVFoundation/DeviceAccess.h"
#include "platform/AVFoundation/DevicesGStreamer.h"
#include "platform/AVFoundation/SourceRecipesGStreamer.h"

#include <atomic>
#include <unistd.h>

namespace zuvi {

namespace {

using Kind = CameraSourceDescription::Kind;

AVAuthorizationStatus firstStatus(CameraPermission permission) {
  switch (permission) {
  case CameraPermission::Authorized:
    return AVAuthorizationStatus::Authorized;
  case CameraPermission::Denied:
    return AVAuthorizationStatus::Denied;
  case CameraPermission::Restricted:
    return AVAuthorizationStatus::Restricted;
  case CameraPermission::Grant:
  case CameraPermission::Refuse:
    break;
  }
  return AVAuthorizationStatus::NotDetermined;
}

/// Absent when the source cannot be opened now.
std::optional<SourceRecipe> recipeOf(const CameraSourceDescription& source,
                                     AVCaptureDevicePosition position) {
  if (!source.path.empty() && ::access(source.path.c_str(), R_OK) != 0) return std::nullopt;
  switch (source.kind) {
  case Kind::None:
    return std::nullopt;
  case Kind::Simulated:
    return simulatedRecipe(position);
  case Kind::Device:
    return deviceRecipe(cameraElementAt(source.path));
  case Kind::Picture:
    return pictureRecipe(source.path);
  case Kind::Film:
    return filmRecipe(source.path);
  }
  return std::nullopt;
}

} // namespace

struct HostCameraProvider::State {
  explicit State(HostCameras given)
      : cameras(std::move(given)), answer(firstStatus(cameras.permission)) {}

  AVAuthorizationStatus status() const;

  const HostCameras cameras;
  std::atomic<AVAuthorizationStatus> answer; ///< what the permission says, without the devices
};

HostCameraProvider::HostCameraProvider(HostCameras cameras)
    : state_(std::make_shared<State>(std::move(cameras))) {}

AVAuthorizationStatus HostCameraProvider::State::status() const {
  if (const auto said = answer.load(); said != AVAuthorizationStatus::Authorized) return said;
  // The host can't grant what the system forbids.
  const auto forbidden = [](const CameraSourceDescription& source) {
    return source.kind == Kind::Device && ::access(source.path.c_str(), F_OK) == 0 &&
           !mayOpenDevice(source.path);
  };
  return forbidden(cameras.front) || forbidden(cameras.back) ? AVAuthorizationStatus::Denied
                                                             : AVAuthorizationStatus::Authorized;
}

AVAuthorizationStatus HostCameraProvider::authorizationStatus() {
  return state_->status();
}

void HostCameraProvider::requestAccess(std::function<void(bool)> answer) {
  auto undecided = AVAuthorizationStatus::NotDetermined;
  state_->answer.compare_exchange_strong(undecided,
                                         state_->cameras.permission == CameraPermission::Grant
                                             ? AVAuthorizationStatus::Authorized
                                             : AVAuthorizationStatus::Denied);
  answer(authorizationStatus() == AVAuthorizationStatus::Authorized);
}

std::vector<CameraDescription> HostCameraProvider::devices() {
  std::vector<CameraDescription> devices;
  auto add = [&devices](const CameraSourceDescription& source, AVCaptureDevicePosition position,
                        const std::string& side) {
    if (source.kind == Kind::None) return;
    const bool simulated = source.kind != Kind::Device;
    devices.push_back(
        {side, simulated ? "Simulated " + side + " camera" : source.path, position, simulated});
  };
  add(state_->cameras.back, AVCaptureDevicePosition::Back, "back");
  add(state_->cameras.front, AVCaptureDevicePosition::Front, "front");
  return devices;
}

std::shared_ptr<CameraStream> HostCameraProvider::open(const std::string& uniqueID) {
  const auto status = authorizationStatus();
  if (status == AVAuthorizationStatus::Denied || status == AVAuthorizationStatus::Restricted)
    return nullptr;
  CameraOpening opening;
  opening.recipe = [state = state_, uniqueID]() -> std::optional<SourceRecipe> {
    if (uniqueID == "back") return recipeOf(state->cameras.back, AVCaptureDevicePosition::Back);
    if (uniqueID == "front") return recipeOf(state->cameras.front, AVCaptureDevicePosition::Front);
    return std::nullopt;
  };
  if (!opening.recipe()) return nullptr;
  opening.permission = [weak = std::weak_ptr(state_)] {
    const auto state = weak.lock();
    return state ? state->status() : AVAuthorizationStatus::Denied;
  };
  return make<CameraStreamGStreamer>(std::move(opening));
}

} // namespace zuvi
