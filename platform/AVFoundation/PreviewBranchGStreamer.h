#pragma once

#include "platform/AVFoundation/PipelineGStreamer.h"
#include "platform/CoreGraphics/CGImage.h"

#include <functional>

namespace zuvi {

/// Turns a camera's pictures into ones that can be drawn, on a thread of its own. Newer pictures
/// take the place of ones that wait.
class PreviewBranch {
public:
  using Handler = std::function<void(std::shared_ptr<const CGImage>)>;

  /// Null, with a line on the console, when a plugin is missing.
  static std::unique_ptr<PreviewBranch> start(Handler handler);

  /// Never waits.
  void push(const CameraFrame& frame);

private:
  explicit PreviewBranch(std::unique_ptr<Pipeline> pipeline) : pipeline_(std::move(pipeline)) {}

  std::unique_ptr<Pipeline> pipeline_;
};

} // namespace zuvi
