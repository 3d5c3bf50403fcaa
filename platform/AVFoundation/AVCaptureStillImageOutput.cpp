#include "platform/AVFoundation/AVCaptureStillImageOutput.h"

#include "platform/AVFoundation/AVError.h"
#include "platform/AVFoundation/CameraStream.h"

#include <algorithm>

namespace zuvi {

namespace {

bool asksForJpeg(const Value::Dictionary& settings) {
  const Value* codec = valueForKey(settings, AVVideoCodecKey);
  return !codec || *codec == Value(AVVideoCodecJPEG);
}

} // namespace

void AVCaptureStillImageOutput::captureStillImageAsynchronously(
    const std::shared_ptr<AVCaptureConnection>& connection, Handler handler) {
  auto& queue = callbackQueue();
  auto answer = [&queue, handler = std::move(handler)](std::optional<Data> jpeg,
                                                       std::optional<Error> error) {
    std::optional<CMSampleBuffer> buffer;
    if (jpeg) buffer = CMSampleBuffer{AVVideoCodecJPEG, std::move(*jpeg)};
    queue.async([handler, buffer = std::move(buffer), error = std::move(error)] {
      handler(buffer, error);
    });
  };
  auto refuse = [&answer](int code, const char* why) {
    answer(std::nullopt, Error{AVFoundationErrorDomain, code, why});
  };

  auto own = connections();
  if (std::ranges::find(own, connection) == own.end())
    return refuse(AVErrorInvalidSetting, "The connection is none of this output.");
  if (!asksForJpeg(outputSettings))
    return refuse(AVErrorInvalidSetting, "A still is JPEG and nothing else.");
  if (auto stream = runningStream())
    stream->captureStill(std::move(answer));
  else
    refuse(AVErrorSessionNotRunning, "The session does not run.");
}

std::optional<Data> AVCaptureStillImageOutput::jpegStillImageNSDataRepresentation(
    const std::optional<CMSampleBuffer>& buffer) {
  if (!buffer || buffer->codec != AVVideoCodecJPEG || buffer->data.empty()) return std::nullopt;
  return buffer->data;
}

} // namespace zuvi
