#include "platform/AVFoundation/AVCaptureSession.h"

#include "platform/AVFoundation/AVCaptureDeviceInput.h"
#include "platform/AVFoundation/AVCaptureOutput.h"
#include "platform/AVFoundation/CameraStream.h"

namespace zuvi {

AVCaptureSession::~AVCaptureSession() {
  for (const auto& output : outputs_)
    output->sessionWillEnd();
  stopRunning();
}

bool AVCaptureSession::addInput(const std::shared_ptr<AVCaptureDeviceInput>& input) {
  if (!input || input_) return false;
  input_ = input;
  for (const auto& preview : previews_)
    input_->stream()->addPreview(preview);
  previews_.clear();
  return true;
}

bool AVCaptureSession::addOutput(const std::shared_ptr<AVCaptureOutput>& output) {
  if (!output || output->session_.lock()) return false;
  output->session_ = weak_from_this();
  outputs_.push_back(output);
  return true;
}

void AVCaptureSession::startRunning() {
  if (input_ && !isRunning()) input_->stream()->start();
}

void AVCaptureSession::stopRunning() {
  if (isRunning()) input_->stream()->stop();
}

bool AVCaptureSession::isRunning() const {
  return input_ && input_->stream()->isRunning();
}

void AVCaptureSession::addPreview(const std::shared_ptr<CameraPreview>& preview) {
  if (input_)
    input_->stream()->addPreview(preview);
  else
    previews_.push_back(preview);
}

std::shared_ptr<CameraStream> AVCaptureSession::stream() const {
  return input_ ? input_->stream() : nullptr;
}

} // namespace zuvi
