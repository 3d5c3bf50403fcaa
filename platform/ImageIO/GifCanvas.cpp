#include "platform/ImageIO/GifCanvas.h"

#include <algorithm>
#include <utility>

namespace zuvi {

// How much of the frame lies on the canvas.

int GifCanvas::columns(const GifFrame& frame) const {
  return std::clamp(width_ - frame.left, 0, frame.width);
}

int GifCanvas::rows(const GifFrame& frame) const {
  return std::clamp(height_ - frame.top, 0, frame.height);
}

bool GifCanvas::covers(const GifFrame& frame) const {
  return columns(frame) == width_ && rows(frame) == height_;
}

std::size_t GifCanvas::offset(const GifFrame& frame, int row) const {
  return static_cast<std::size_t>(frame.top + row) * static_cast<std::size_t>(width_) +
         static_cast<std::size_t>(frame.left);
}

std::shared_ptr<std::uint32_t> GifCanvas::copy(const Picture& from) {
  auto made = pool_.take();
  if (from)
    std::copy_n(from.get(), size(), made.get());
  else
    std::fill_n(made.get(), size(), 0U);
  return made;
}

/// What the frame leaves behind for the next one.
GifCanvas::Picture GifCanvas::leave(const GifFrame& frame, const Picture& shown) {
  if (frame.disposal == GifFrame::Disposal::Keep) return shown;
  if (frame.disposal == GifFrame::Disposal::Restore) return ground_;
  if (covers(frame)) return nullptr;
  auto cleared = copy(shown);
  for (int y = 0; y < rows(frame); y++)
    std::fill_n(cleared.get() + offset(frame, y), columns(frame), 0U);
  return cleared;
}

std::shared_ptr<const CGImage> GifCanvas::lay(const GifFrame& frame) {
  auto made = covers(frame) ? pool_.take() : copy(ground_);
  const auto& colors = frame.colors;
  const bool blends = ground_ && std::find(colors.begin(), colors.end(), 0U) != colors.end();
  for (int y = 0; y < rows(frame); y++) {
    const std::uint8_t* numbers =
        frame.numbers.get() + static_cast<std::size_t>(y) * static_cast<std::size_t>(frame.width);
    std::uint32_t* pixels = made.get() + offset(frame, y);
    const std::uint32_t* below = blends ? ground_.get() + offset(frame, y) : nullptr;
    const int end = columns(frame);
    if (!blends)
      std::transform(numbers, numbers + end, pixels, [&](std::uint8_t n) { return colors[n]; });
    for (int x = 0; blends && x < end; x++)
      pixels[x] = colors[numbers[x]] ? colors[numbers[x]] : below[x];
  }
  ground_ = leave(frame, made);
  const std::size_t row = static_cast<std::size_t>(width_) * sizeof(std::uint32_t);
  return CGImage::fromPixels(Data(made, made.get(), row * static_cast<std::size_t>(height_)),
                             width_, height_, row, CGImage::Format::BGRA);
}

} // namespace zuvi
