#include "platform/AVFoundation/AVCaptureOutput.h"

#include <ZuviSDK/AVFoundation/CameraProvider.h>
#include <ZuviSDK/Foundation/Make.h>
#include "platform/AVFoundation/AVCaptureSession.h"
#include "platform/AVFoundation/CameraStream.h"

namespace zuvi {

std::vector<std::shared_ptr<AVCaptureConnection>> AVCaptureOutput::connections() const {
  auto session = session_.lock();
  if (!session || !session->input()) return {};
  if (!connection_) connection_ = make<AVCaptureConnection>(std::vector{AVCaptureInputPort{}});
  return {connection_};
}

std::shared_ptr<CameraStream> AVCaptureOutput::runningStream() const {
  auto session = session_.lock();
  return session && session->isRunning() ? session->stream() : nullptr;
}

DispatchQueue& AVCaptureOutput::callbackQueue() const {
  auto session = session_.lock();
  auto stream = session ? session->stream() : nullptr;
  return stream ? stream->callbackQueue() : AVCaptureDevice::provider()->callbackQueue();
}

} // namespace zuvi
