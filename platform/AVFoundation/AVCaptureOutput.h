#pragma once

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include "platform/AVFoundation/AVCaptureConnection.h"
#include "platform/AVFoundation/CameraStream.h"

#include <memory>
#include <vector>

namespace zuvi {

class AVCaptureSession;

/// Something that takes pictures from a session's camera. Main queue only.
class AVCaptureOutput {
public:
  virtual ~AVCaptureOutput() = default;
  AVCaptureOutput(const AVCaptureOutput&) = delete;
  AVCaptureOutput& operator=(const AVCaptureOutput&) = delete;

  /// Empty until the output belongs to a session that has an input.
  std::vector<std::shared_ptr<AVCaptureConnection>> connections() const;

protected:
  AVCaptureOutput() = default;
  /// The camera of the running session; null when there is none.
  std::shared_ptr<CameraStream> runningStream() const;
  /// Where this output's user hears of results.
  DispatchQueue& callbackQueue() const;

private:
  friend class AVCaptureSession;
  /// What it takes with the camera.
  virtual CameraUse use() const = 0;
  /// The session is about to go.
  virtual void sessionWillEnd() {}

  std::weak_ptr<AVCaptureSession> session_;
  mutable std::shared_ptr<AVCaptureConnection> connection_;
};

} // namespace zuvi
