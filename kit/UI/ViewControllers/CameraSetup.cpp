#include "kit/UI/ViewControllers/CameraSetup.h"

#include "platform/AVFoundation/AVCaptureDevice.h"
#include "platform/AVFoundation/AVCaptureDeviceInput.h"
#include "platform/AVFoundation/AVCaptureSession.h"
#include "platform/AVFoundation/AVCaptureVideoPreviewLayer.h"
#include "platform/Dispatch/DispatchQueue.h"
#include "platform/Foundation/Make.h"

#include <algorithm>
#include <utility>

namespace zuvi {

void askForCamera(std::function<void(bool granted)> answer) {
  switch (AVCaptureDevice::authorizationStatus()) {
  case AVAuthorizationStatus::Authorized:
    return answer(true);
  case AVAuthorizationStatus::Denied:
  case AVAuthorizationStatus::Restricted:
    return answer(false);
  case AVAuthorizationStatus::NotDetermined:
    AVCaptureDevice::requestAccess([answer = std::move(answer)](bool granted) {
      DispatchQueue::main().async([answer, granted] { answer(granted); });
    });
  }
}

std::shared_ptr<AVCaptureVideoPreviewLayer>
addCamera(const std::shared_ptr<AVCaptureSession>& session, AVCaptureDevicePosition position) {
  session->sessionPreset = AVCaptureSessionPresetHigh;
  const auto devices = AVCaptureDevice::devices();
  const auto device = std::find_if(devices.begin(), devices.end(), [&](const auto& candidate) {
    return candidate->position() == position;
  });
  if (device == devices.end()) return nullptr;
  const auto input = AVCaptureDeviceInput::withDevice(*device);
  if (!input) return nullptr;
  session->addInput(input);
  auto preview = make<AVCaptureVideoPreviewLayer>(session);
  preview->setVideoGravity(AVLayerVideoGravityResizeAspectFill);
  return preview;
}

} // namespace zuvi
