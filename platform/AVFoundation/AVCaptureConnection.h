#pragma once

#include <memory>
#include <vector>

namespace zuvi {

enum class AVMediaType { Video, Audio };

/// One stream of an input.
struct AVCaptureInputPort {
  AVMediaType mediaType = AVMediaType::Video;
};

/// The way from an input's ports to one output or preview of a session.
class AVCaptureConnection {
public:
  explicit AVCaptureConnection(std::vector<AVCaptureInputPort> ports) : ports_(std::move(ports)) {}
  const std::vector<AVCaptureInputPort>& inputPorts() const { return ports_; }

  /// A preview of a camera in front is a mirror, as people know themselves; others are not. False
  /// leaves it to `videoMirrored`. Films and stills are never mirrored.
  bool automaticallyAdjustsVideoMirroring = true;
  /// Whether a preview's pictures are shown left for right.
  bool videoMirrored = false;

private:
  std::vector<AVCaptureInputPort> ports_;
};

} // namespace zuvi
