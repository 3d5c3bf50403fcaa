#pragma once

#include <functional>
#include <memory>

namespace zuvi {

class AVCaptureDevice;
class AVCaptureSession;
class AVCaptureVideoPreviewLayer;
enum class AVCaptureDevicePosition;

// The set-up that both camera screens share. Main queue only.

/// Passes to `answer` whether the camera may be used: at once where it is known, else later on the
/// main queue, after the person was asked.
void askForCamera(std::function<void(bool granted)> answer);

/// The first camera with that position; null when there is none.
std::shared_ptr<AVCaptureDevice> cameraAt(AVCaptureDevicePosition position);

/// Adds the first camera with that position to `session`. Returns the preview's layer, which the
/// screen has to place; null when there is no such camera or it can't be opened.
std::shared_ptr<AVCaptureVideoPreviewLayer>
addCamera(const std::shared_ptr<AVCaptureSession>& session, AVCaptureDevicePosition position);

} // namespace zuvi
