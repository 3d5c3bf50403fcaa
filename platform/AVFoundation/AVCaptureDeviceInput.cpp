#include "platform/AVFoundation/AVCaptureDeviceInput.h"

#include "platform/AVFoundation/AVCaptureDevice.h"
#include "platform/AVFoundation/CameraProvider.h"
#include "platform/AVFoundation/CameraStream.h"
#include "platform/Foundation/Make.h"

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
