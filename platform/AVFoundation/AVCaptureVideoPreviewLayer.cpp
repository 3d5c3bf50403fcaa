#include "platform/AVFoundation/AVCaptureVideoPreviewLayer.h"

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include <ZuviSDK/Foundation/Make.h>
#include "platform/AVFoundation/AVCaptureConnection.h"
#include "platform/AVFoundation/AVCaptureDeviceInput.h"
#include "platform/AVFoundation/AVCaptureSession.h"
#include "platform/AVFoundation/PreviewFeed.h"

namespace zuvi {

AVCaptureVideoPreviewLayer::AVCaptureVideoPreviewLayer(
    const std::shared_ptr<AVCaptureSession>& session)
    : session_(session), connection_(make<AVCaptureConnection>(std::vector{AVCaptureInputPort{}})) {
  setMasksToBounds(true);
  setVideoGravity(videoGravity_);
}

AVCaptureVideoPreviewLayer::~AVCaptureVideoPreviewLayer() = default;

void AVCaptureVideoPreviewLayer::didMake() {
  feed_ =
      make<PreviewFeed>(std::static_pointer_cast<AVCaptureVideoPreviewLayer>(shared_from_this()));
  if (auto session = session_.lock()) session->addPreview(feed_);
}

void AVCaptureVideoPreviewLayer::show(std::shared_ptr<const CGImage> picture) {
  if (connection_->automaticallyAdjustsVideoMirroring) {
    const auto running = session();
    const auto input = running ? running->input() : nullptr;
    if (input)
      connection_->videoMirrored = input->device()->position() == AVCaptureDevicePosition::Front;
  }
  setContentsMirrored(connection_->videoMirrored);
  setContents(std::move(picture));
}

void AVCaptureVideoPreviewLayer::setVideoGravity(AVLayerVideoGravity gravity) {
  videoGravity_ = gravity;
  switch (gravity) {
  case AVLayerVideoGravity::Resize:
    return setContentsGravity(ContentsGravity::Resize);
  case AVLayerVideoGravity::ResizeAspect:
    return setContentsGravity(ContentsGravity::ResizeAspect);
  case AVLayerVideoGravity::ResizeAspectFill:
    return setContentsGravity(ContentsGravity::ResizeAspectFill);
  }
}

} // namespace zuvi
