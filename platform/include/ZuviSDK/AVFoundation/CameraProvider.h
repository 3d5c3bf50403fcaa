#pragma once

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include <ZuviSDK/Dispatch/DispatchQueue.h>

namespace zuvi {

class CameraStream;

/// Where cameras and the permission to use them come from; install with
/// `AVCaptureDevice::setProvider`. Any thread.
class CameraProvider {
public:
  virtual ~CameraProvider() = default;

  /// What is known at this moment, without asking anybody.
  virtual AVAuthorizationStatus authorizationStatus() = 0;
  /// `answer` comes once, on any thread.
  virtual void requestAccess(std::function<void(bool granted)> answer) = 0;
  /// The cameras that are known to be there now, the one to take of each side first; does not wait.
  /// A provider that finds out about them later posts `AVCaptureDevicesDidChange`.
  virtual std::vector<CameraDescription> devices() = 0;
  /// Whether the cameras that were there at the beginning are known.
  virtual bool areDevicesKnown() { return true; }
  /// A stream on that camera for one session; null when it is gone or may not be opened. Does not
  /// wait.
  virtual std::shared_ptr<CameraStream> open(const std::string& uniqueID) = 0;
  /// The platform queue on which an answer to `requestAccess` reaches the asker.
  virtual DispatchQueue& callbackQueue() { return DispatchQueue::global(); }
};

} // namespace zuvi
