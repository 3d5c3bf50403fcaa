#pragma once

#include <functional>
#include <memory>

namespace zuvi {

class AVCaptureDevice;
class AVCaptureSession;
class AVCaptureVideoPreviewLayer;
enum class AVCaptureDevicePosition;

// What both camera screens do before they differ. Main queue only.

/// Tells `answer`, at once where it is known, whether the camera may be used; else asks the person
/// and tells it later, on the main queue.
void askForCamera(std::function<void(bool granted)> answer);

/// The first camera that looks that way; null for none.
std::shared_ptr<AVCaptureDevice> cameraAt(AVCaptureDevicePosition position);

/// Gives `session` the first camera that looks that way. The layer that shows what it sees, for the
/// screen to place; null when there is no such camera or it can't be opened.
std::shared_ptr<AVCaptureVideoPreviewLayer>
addCamera(const std::shared_ptr<AVCaptureSession>& session, AVCaptureDevicePosition position);

} // namespace zuvi
