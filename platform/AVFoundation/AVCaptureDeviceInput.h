#pragma once

#include <memory>

namespace zuvi {

class AVCaptureDevice;
class CameraStream;

/// A camera as the input of one session.
class AVCaptureDeviceInput {
public:
  /// Null when the camera cannot be opened. It is not in use before a session runs.
  static std::shared_ptr<AVCaptureDeviceInput>
  withDevice(const std::shared_ptr<AVCaptureDevice>& device);

  AVCaptureDeviceInput(std::shared_ptr<AVCaptureDevice> device,
                       std::shared_ptr<CameraStream> stream);

  const std::shared_ptr<AVCaptureDevice>& device() const { return device_; }
  const std::shared_ptr<CameraStream>& stream() const { return stream_; }

private:
  std::shared_ptr<AVCaptureDevice> device_;
  std::shared_ptr<CameraStream> stream_;
};

} // namespace zuvi
