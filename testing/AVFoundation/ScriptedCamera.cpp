#include "testing/AVFoundation/ScriptedCamera.h"

#include <ZuviSDK/Foundation/Make.h>
#include "platform/AVFoundation/AVError.h"
#include "testing/AVFoundation/ScriptedStream.h"

#include <algorithm>
#include <utility>

namespace zuvi {

std::vector<std::shared_ptr<ScriptedStream>> ScriptedCamera::liveStreams() const {
  std::vector<std::shared_ptr<ScriptedStream>> live;
  for (const auto& stream : streams_)
    if (auto one = stream.lock()) live.push_back(std::move(one));
  return live;
}

bool ScriptedCamera::isRunning() const {
  return std::ranges::any_of(liveStreams(), [](const auto& one) { return one->isRunning(); });
}

void ScriptedCamera::answerStills() {
  for (const auto& stream : liveStreams())
    stream->answerStills(still);
}

void ScriptedCamera::unplug() {
  for (const auto& stream : liveStreams())
    stream->end({AVFoundationErrorDomain, AVErrorDeviceWasDisconnected, "The camera is gone."});
}

void ScriptedCamera::refuse() {
  for (const auto& stream : liveStreams())
    stream->end({AVFoundationErrorDomain, AVErrorNotAuthorized, "The camera is refused."});
}

void ScriptedCamera::showFrame(const std::shared_ptr<const CGImage>& image) {
  for (const auto& stream : liveStreams())
    stream->show(image);
}

ScriptedCameraProvider::ScriptedCameraProvider(DispatchQueue& queue)
    : front(make<ScriptedCamera>()), back(make<ScriptedCamera>()), queue_(queue) {}

void ScriptedCameraProvider::requestAccess(std::function<void(bool)> answer) {
  requests++;
  waiting_.push_back(std::move(answer));
  if (answersRequests) answerRequests();
}

void ScriptedCameraProvider::answerRequests() {
  if (status == AVAuthorizationStatus::NotDetermined)
    status = grants ? AVAuthorizationStatus::Authorized : AVAuthorizationStatus::Denied;
  // The device class hops to the queue; here the answer may come at once.
  for (const auto& answer : std::exchange(waiting_, {}))
    answer(status == AVAuthorizationStatus::Authorized);
}

std::vector<CameraDescription> ScriptedCameraProvider::devices() {
  std::vector<CameraDescription> devices;
  const auto add = [&](const auto& camera, const std::string& side, auto position) {
    if (camera) devices.push_back({camera->id.empty() ? side : camera->id, side, position, true});
  };
  add(front, "front", AVCaptureDevicePosition::Front);
  add(back, "back", AVCaptureDevicePosition::Back);
  return devices;
}

std::shared_ptr<CameraStream> ScriptedCameraProvider::open(const std::string& uniqueID) {
  std::shared_ptr<ScriptedCamera> camera;
  for (const auto& listed : devices())
    if (listed.uniqueID == uniqueID)
      camera = listed.position == AVCaptureDevicePosition::Front ? front : back;
  if (!camera || !camera->opens) return nullptr;
  auto stream = make<ScriptedStream>(camera, queue_);
  camera->streams_.push_back(stream);
  return stream;
}

} // namespace zuvi
