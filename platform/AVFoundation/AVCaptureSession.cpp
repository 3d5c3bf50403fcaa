#include "platform/AVFoundation/AVCaptureSession.h"

#include "platform/AVFoundation/AVCaptureDeviceInput.h"
#include "platform/AVFoundation/AVCaptureOutput.h"
#include "platform/AVFoundation/CameraStream.h"

#include <algorithm>

namespace zuvi {

AVCaptureSession::~AVCaptureSession() {
  for (const auto& output : outputs_)
    output->sessionWillEnd();
  stopRunning();
}

bool AVCaptureSession::addInput(const std::shared_ptr<AVCaptureDeviceInput>& input) {
  if (!input || input_) return false;
  input_ = input;
  const auto& stream = input_->stream();
  for (const auto& preview : previews_)
    stream->addPreview(preview);
  stream->setListener(
      [weak = weak_from_this(), of = stream.get()](CameraStream::Event event, const auto& error) {
        DispatchQueue::main().async([weak, of, event, error] {
          const auto self = weak.lock();
          if (!self || self->stream().get() != of || !self->observer) return;
          self->observer(event == CameraStream::Event::Failed ? AVCaptureSessionEvent::Failed
                                                              : AVCaptureSessionEvent::FirstPicture,
                         error);
        });
      });
  return true;
}

void AVCaptureSession::removeInput() {
  stopRunning();
  input_ = nullptr;
}

bool AVCaptureSession::addOutput(const std::shared_ptr<AVCaptureOutput>& output) {
  if (!output || output->session_.lock()) return false;
  output->session_ = weak_from_this();
  outputs_.push_back(output);
  return true;
}

void AVCaptureSession::startRunning() {
  if (!input_ || isRunning()) return;
  const bool stillsAlone =
      !outputs_.empty() && std::ranges::all_of(outputs_, [](const auto& output) {
        return output->use() == CameraUse::Stills;
      });
  input_->stream()->start(stillsAlone ? CameraUse::Stills : CameraUse::Film);
}

void AVCaptureSession::stopRunning() {
  if (isRunning()) input_->stream()->stop();
}

bool AVCaptureSession::isRunning() const {
  return input_ && input_->stream()->isRunning();
}

void AVCaptureSession::addPreview(const std::shared_ptr<CameraPreview>& preview) {
  previews_.push_back(preview); // for a later input as well
  if (input_) input_->stream()->addPreview(preview);
}

std::shared_ptr<CameraStream> AVCaptureSession::stream() const {
  return input_ ? input_->stream() : nullptr;
}

} // namespace zuvi
