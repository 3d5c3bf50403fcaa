#include "platform/AVFoundation/PreviewFeed.h"

#include "platform/AVFoundation/AVCaptureVideoPreviewLayer.h"

namespace zuvi {

namespace {
// How soon a layer that came onto a surface is noticed.
constexpr std::chrono::milliseconds lookInterval{100};
} // namespace

PreviewFeed::PreviewFeed(std::weak_ptr<AVCaptureVideoPreviewLayer> layer)
    : layer_(std::move(layer)) {}

bool PreviewFeed::wantsFrames() {
  if (shown_) return true;
  std::lock_guard lock(mutex_);
  auto now = std::chrono::steady_clock::now();
  if (now >= nextLook_) {
    nextLook_ = now + lookInterval;
    post();
  }
  return false;
}

void PreviewFeed::frame(std::shared_ptr<const CGImage> image) {
  std::lock_guard lock(mutex_);
  newest_.swap(image);
  post();
}

void PreviewFeed::post() {
  if (!waiting_.expired()) return;
  auto ticket = std::make_shared<int>();
  waiting_ = ticket;
  DispatchQueue::main().async([self = shared_from_this(), ticket]() mutable {
    ticket.reset(); // a picture that comes from here on posts anew
    self->deliver();
  });
}

void PreviewFeed::deliver() {
  auto layer = layer_.lock();
  shown_ = layer && layer->host();
  std::shared_ptr<const CGImage> image;
  {
    std::lock_guard lock(mutex_);
    image.swap(newest_);
  }
  if (shown_ && image) layer->show(std::move(image));
}

} // namespace zuvi
