#pragma once

#include <ZuviSDK/Foundation/Error.h>
#include <ZuviSDK/Foundation/Value.h>
#include "platform/AVFoundation/AVCaptureOutput.h"
#include "platform/AVFoundation/CMSampleBuffer.h"

#include <functional>
#include <optional>

namespace zuvi {

/// Takes single pictures at the full size in which the camera runs; in a session without film that
/// is the largest that it has (`AVCaptureSessionPreset`). Main queue only.
class AVCaptureStillImageOutput final : public AVCaptureOutput {
public:
  using Handler = std::function<void(std::optional<CMSampleBuffer>, std::optional<Error>)>;

  /// `AVVideoCodecKey` may name `AVVideoCodecJPEG`, which also holds without an entry.
  Value::Dictionary outputSettings;

  /// Takes the next picture that the camera sees after this call. The handler comes once, on a
  /// platform queue; without a buffer when none comes within a few seconds or the session stops.
  void captureStillImageAsynchronously(const std::shared_ptr<AVCaptureConnection>& connection,
                                       Handler handler);

  /// The JPEG file's bytes; absent when the buffer holds something else.
  static std::optional<Data>
  jpegStillImageNSDataRepresentation(const std::optional<CMSampleBuffer>& buffer);

private:
  CameraUse use() const override { return CameraUse::Stills; }
};

} // namespace zuvi
