#include "kit/UI/ViewControllers/CameraSetup.h"

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Foundation/Make.h>
#include "platform/AVFoundation/AVCaptureDeviceInput.h"
#include "platform/AVFoundation/AVCaptureSession.h"
#include "platform/AVFoundation/AVCaptureVideoPreviewLayer.h"

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

std::shared_ptr<AVCaptureDevice> cameraAt(AVCaptureDevicePosition position) {
  for (auto& device : AVCaptureDevice::devices())
    if (device->position() == position) return std::move(device);
  return nullptr;
}

std::shared_ptr<AVCaptureVideoPreviewLayer>
addCamera(const std::shared_ptr<AVCaptureSession>& session, AVCaptureDevicePosition position) {
  session->sessionPreset = AVCaptureSessionPresetHigh;
  const auto input = AVCaptureDeviceInput::withDevice(cameraAt(position));
  if (!input) return nullptr;
  session->addInput(input);
  auto preview = make<AVCaptureVideoPreviewLayer>(session);
  preview->setVideoGravity(AVLayerVideoGravityResizeAspectFill);
  return preview;
}

} // namespace zuvi
