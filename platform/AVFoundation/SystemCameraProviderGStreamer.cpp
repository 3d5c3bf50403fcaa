#include <ZuviSDK/AVFoundation/SystemCameraProvider.h>

#include <ZuviSDK/Foundation/Make.h>
#include "platform/AVFoundation/CameraPortal.h"
#include "platform/AVFoundation/CameraSides.h"
#include "platform/AVFoundation/CameraStreamGStreamer.h"
#include "platform/AVFoundation/DeviceAccess.h"
#include "platform/AVFoundation/DeviceWatchGStreamer.h"

#include <algorithm>
#include <mutex>

namespace zuvi {

namespace {

using Position = AVCaptureDevicePosition;

// Behind the portal nothing is known of the cameras before they were granted, and it does not
// always know itself whether there are any. Until then these two stand for them.
const CameraDescription portalFront{"portal:front", "Camera", Position::Front, false};
const CameraDescription portalBack{"portal:back", "Camera", Position::Back, false};

std::optional<SourceRecipe> recipeFor(const std::string& uniqueID, const DeviceWatch& watch) {
  for (const auto& camera : watch.cameras())
    if (camera.candidate.uniqueID == uniqueID) return deviceRecipe(camera.element);
  return std::nullopt;
}

} // namespace

struct SystemCameraProvider::Request {
  std::mutex mutex;                                 ///< guards what follows
  DeviceWatch* granted = nullptr;                   ///< once the user has granted the cameras
  std::vector<std::function<void(bool)>> answering; ///< who waits for the user
};

SystemCameraProvider::SystemCameraProvider(std::map<std::string, Position> positions)
    : SystemCameraProvider(std::move(positions),
                           CameraPortal::isSandboxed() ? Access::Portal : Access::Devices) {}

SystemCameraProvider::SystemCameraProvider(std::map<std::string, Position> positions, Access access)
    : positions_(std::move(positions)), access_(access), request_(std::make_unique<Request>()) {}

SystemCameraProvider::~SystemCameraProvider() = default;

DeviceWatch* SystemCameraProvider::watch() {
  if (access_ == Access::Devices) return &DeviceWatch::machine();
  const std::lock_guard lock(request_->mutex);
  auto* const granted = request_->granted;
  return granted && !granted->hasFailed() ? granted : nullptr;
}

bool SystemCameraProvider::areDevicesKnown() {
  const auto* known = watch();
  return !known || known->isComplete();
}

AVAuthorizationStatus SystemCameraProvider::authorizationStatus() {
  // A refusal is no last word: whoever asks again lets the portal decide whether to ask the user.
  if (access_ == Access::Portal)
    return watch() ? AVAuthorizationStatus::Authorized : AVAuthorizationStatus::NotDetermined;
  const auto cameras = watch()->cameras();
  const bool any = std::ranges::any_of(cameras, [](const auto& camera) {
    return camera.path.empty() || mayOpenDevice(camera.path);
  });
  return any ? AVAuthorizationStatus::Authorized : deviceAuthorization("/dev");
}

void SystemCameraProvider::requestAccess(std::function<void(bool)> answer) {
  const auto status = authorizationStatus();
  if (status != AVAuthorizationStatus::NotDetermined)
    return answer(status == AVAuthorizationStatus::Authorized);
  {
    const std::lock_guard lock(request_->mutex);
    request_->answering.push_back(std::move(answer));
    if (request_->answering.size() > 1) return; // one dialogue answers all
  }
  CameraPortal::requestAccess(
      [self = shared_from_this()](bool granted) { self->answered(granted); });
}

void SystemCameraProvider::answered(bool granted) {
  std::vector<std::function<void(bool)>> answering;
  {
    const std::lock_guard lock(request_->mutex);
    answering.swap(request_->answering);
    // One that failed is not taken up again: the user may have taken the cameras back.
    if (granted && (!request_->granted || request_->granted->hasFailed()))
      request_->granted = &DeviceWatch::remote(CameraPortal::openCameras);
  }
  for (const auto& answer : answering)
    answer(granted);
}

std::vector<CameraDescription> SystemCameraProvider::listed(const DeviceWatch& watch) const {
  const auto said = [this](const std::string& name) {
    const auto found = positions_.find(name);
    return found == positions_.end() ? Position::Unspecified : found->second;
  };
  std::vector<CameraCandidate> candidates;
  for (auto& camera : watch.cameras()) {
    auto& candidate = camera.candidate;
    for (const auto& name : {candidate.uniqueID, camera.path, candidate.localizedName})
      if (candidate.position == Position::Unspecified) candidate.position = said(name);
    candidates.push_back(std::move(candidate));
  }
  return assignSides(candidates);
}

std::vector<CameraDescription> SystemCameraProvider::devices() {
  const auto* known = watch();
  if (access_ == Access::Devices || (known && known->isComplete())) return listed(*known);
  return {portalFront, portalBack};
}

std::shared_ptr<CameraStream> SystemCameraProvider::open(const std::string& uniqueID) {
  if (authorizationStatus() == AVAuthorizationStatus::Denied) return nullptr;
  CameraOpening opening;
  if (access_ == Access::Devices) {
    for (const auto& camera : watch()->cameras()) {
      if (camera.candidate.uniqueID != uniqueID) continue;
      if (!camera.path.empty() && !mayOpenDevice(camera.path)) return nullptr;
      opening.recipe = [uniqueID] { return recipeFor(uniqueID, DeviceWatch::machine()); };
      return make<CameraStreamGStreamer>(std::move(opening));
    }
    return nullptr;
  }
  opening.permission = [self = shared_from_this()] {
    const auto* known = self->watch();
    return known && known->isComplete() ? AVAuthorizationStatus::Authorized
                                        : AVAuthorizationStatus::NotDetermined;
  };
  opening.recipe = [self = shared_from_this(), uniqueID]() -> std::optional<SourceRecipe> {
    for (const auto& camera : self->devices()) {
      const bool stoodFor =
          (uniqueID == portalFront.uniqueID && camera.position == Position::Front) ||
          (uniqueID == portalBack.uniqueID && camera.position == Position::Back);
      if (stoodFor || camera.uniqueID == uniqueID)
        return recipeFor(camera.uniqueID, *self->watch());
    }
    return std::nullopt;
  };
  return make<CameraStreamGStreamer>(std::move(opening));
}

} // namespace zuvi
