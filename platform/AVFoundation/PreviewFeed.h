#pragma once

#include "platform/AVFoundation/CameraStream.h"

#include <atomic>
#include <chrono>
#include <mutex>

namespace zuvi {

class AVCaptureVideoPreviewLayer;

/// Carries the newest picture from the camera's threads to a preview layer on the main queue. At
/// most one piece of work waits there, however busy the main queue is.
class PreviewFeed final : public CameraPreview, public std::enable_shared_from_this<PreviewFeed> {
public:
  explicit PreviewFeed(std::weak_ptr<AVCaptureVideoPreviewLayer> layer);

  bool wantsFrames() override;
  void frame(std::shared_ptr<const CGImage> image) override;

private:
  void post();
  void deliver();

  const std::weak_ptr<AVCaptureVideoPreviewLayer> layer_; // locked on the main queue only
  std::atomic<bool> shown_ = false;
  std::mutex mutex_;
  std::shared_ptr<const CGImage> newest_;
  std::weak_ptr<int> waiting_; // lives as long as the work on the main queue
  std::chrono::steady_clock::time_point nextLook_;
};

} // namespace zuvi
