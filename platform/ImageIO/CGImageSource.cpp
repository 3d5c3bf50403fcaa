#include "platform/ImageIO/CGImageSource.h"

#include "platform/ImageIO/GifCanvas.h"
#include "platform/ImageIO/GifReader.h"

#include <exception>
#include <future>
#include <utility>

namespace zuvi {

namespace {

constexpr double shortestDelay = 0.05; // seconds; what asks for less gets the usual one
constexpr double usualDelay = 0.1;     // seconds

} // namespace

std::shared_ptr<CGImageSource> CGImageSource::createWithData(const Data& bytes) {
  try {
    return decode(bytes);
  } catch (const std::exception&) { // neither memory nor a thread is to be had
    return nullptr;
  }
}

std::shared_ptr<CGImageSource> CGImageSource::decode(const Data& bytes) {
  auto gif = GifReader::open(bytes);
  if (!gif) return nullptr;
  auto source = std::make_shared<CGImageSource>();
  GifCanvas canvas(gif->width(), gif->height());
  // A frame is laid down on another thread while the next one is read here.
  std::future<std::shared_ptr<const CGImage>> image;
  const auto keepImage = [&] {
    if (image.valid()) source->frames_.back().image = image.get();
  };
  while (auto frame = gif->next()) {
    keepImage();
    source->frames_.push_back({nullptr, frame->delay});
    if (frame->numbers)
      image = std::async([&canvas, laid = std::move(*frame)] { return canvas.lay(laid); });
  }
  keepImage();
  return source;
}

std::size_t CGImageSource::count() const {
  return frames_.size();
}

std::shared_ptr<const CGImage> CGImageSource::createImageAtIndex(std::size_t index) const {
  return index < count() ? frames_[index].image : nullptr;
}

Value::Dictionary CGImageSource::copyPropertiesAtIndex(std::size_t index) const {
  if (index >= count() || !frames_[index].delay) return {};
  const double delay = *frames_[index].delay / 100.0;
  return {{kCGImagePropertyGIFDictionary,
           Value::Dictionary{
               {kCGImagePropertyGIFUnclampedDelayTime, delay},
               {kCGImagePropertyGIFDelayTime, delay < shortestDelay ? usualDelay : delay}}}};
}

} // namespace zuvi
