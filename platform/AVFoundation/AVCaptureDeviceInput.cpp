#include "platform/AVFoundation/AVCaptureDeviceInput.h"

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include <ZuviSDK/AVFoundation/CameraProvider.h>
#include <ZuviSDK/Foundation/Make.h>
#include "platform/AVFoundation/CameraStream.h"

namespace zuvi {

AVCaptureDeviceInput::AVCaptureDeviceInput(std::shared_ptr<AVCaptureDevice> device,
                                           std::shared_ptr<CameraStream> stream)
    : device_(std::move(device)), stream_(std::move(stream)) {}

std::shared_ptr<AVCaptureDeviceInput>
AVCaptureDeviceInput::withDevice(const std::shared_ptr<AVCaptureDevice>& device) {
  if (!device) return nullptr;
  auto stream = device->source()->open(device->uniqueID());
  return stream ? make<AVCaptureDeviceInput>(device, std::move(stream)) : nullptr;
}

} // namespace zuvi
