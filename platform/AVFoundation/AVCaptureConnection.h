#pragma once

#include <memory>
#include <vector>

namespace zuvi {

enum class AVMediaType { Video, Audio };

/// One stream of an input.
struct AVCaptureInputPort {
  AVMediaType mediaType = AVMediaType::Video;
};

/// The way from an input's ports to one output of a session.
class AVCaptureConnection {
public:
  explicit AVCaptureConnection(std::vector<AVCaptureInputPort> ports) : ports_(std::move(ports)) {}
  const std::vector<AVCaptureInputPort>& inputPorts() const { return ports_; }

private:
  std::vector<AVCaptureInputPort> ports_;
};

} // namespace zuvi
