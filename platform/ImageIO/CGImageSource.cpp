#include "platform/ImageIO/CGImageSource.h"

#include "platform/ImageIO/GifFramesGiflib.h"
#include "platform/ImageIO/PixelPool.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace zuvi {

namespace {

constexpr double shortestDelay = 0.05; // seconds; what asks for less gets the usual one
constexpr double usualDelay = 0.1;     // seconds

} // namespace

/// The frames of the file, and the pictures that they make laid over one another.
struct CGImageSource::Frames {
  explicit Frames(GifFile file)
      : gif(std::move(file)),
        pool(static_cast<std::size_t>(gif.width) * static_cast<std::size_t>(gif.height),
             gif.frames.size()) {}

  /// A picture of the whole canvas; null is a clear one.
  using Picture = std::shared_ptr<const std::uint32_t>;

  std::size_t size() const {
    return static_cast<std::size_t>(gif.width) * static_cast<std::size_t>(gif.height);
  }

  /// How much of the frame lies on the canvas.
  int columns(const GifFrame& frame) const {
    return std::clamp(gif.width - frame.left, 0, frame.width);
  }
  int rows(const GifFrame& frame) const {
    return std::clamp(gif.height - frame.top, 0, frame.height);
  }
  bool covers(const GifFrame& frame) const {
    return columns(frame) == gif.width && rows(frame) == gif.height;
  }
  std::size_t offset(const GifFrame& frame, int row) const {
    return static_cast<std::size_t>(frame.top + row) * static_cast<std::size_t>(gif.width) +
           static_cast<std::size_t>(frame.left);
  }

  std::shared_ptr<std::uint32_t> copy(const Picture& from) {
    auto made = pool.take();
    if (from)
      std::copy_n(from.get(), size(), made.get());
    else
      std::fill_n(made.get(), size(), 0U);
    return made;
  }

  /// What the next frame is laid over.
  Picture ground(const GifFrame& last) {
    if (last.disposal == GifFrame::Disposal::Keep) return shown;
    if (last.disposal == GifFrame::Disposal::Restore) return under;
    if (covers(last)) return nullptr;
    auto cleared = copy(shown);
    for (int y = 0; y < rows(last); y++)
      std::fill_n(cleared.get() + offset(last, y), columns(last), 0U);
    return cleared;
  }

  void lay(const GifFrame& frame) {
    auto made = covers(frame) ? pool.take() : copy(under);
    const auto& colors = frame.colors;
    const bool blends = under && std::find(colors.begin(), colors.end(), 0U) != colors.end();
    for (int y = 0; y < rows(frame); y++) {
      const std::uint8_t* numbers =
          frame.numbers.get() + static_cast<std::size_t>(y) * static_cast<std::size_t>(frame.width);
      std::uint32_t* pixels = made.get() + offset(frame, y);
      const std::uint32_t* below = blends ? under.get() + offset(frame, y) : nullptr;
      const int end = columns(frame);
      if (!blends)
        std::transform(numbers, numbers + end, pixels, [&](std::uint8_t n) { return colors[n]; });
      for (int x = 0; blends && x < end; x++)
        pixels[x] = colors[numbers[x]] ? colors[numbers[x]] : below[x];
    }
    shown = std::move(made);
  }

  /// Draws on until the frame of that index is there.
  void drawThrough(std::size_t index) {
    if (index < drawn) { // from the beginning
      shown = under = nullptr;
      drawn = 0;
    }
    while (drawn <= index) {
      under = drawn > 0 ? ground(gif.frames[drawn - 1]) : nullptr;
      lay(gif.frames[drawn++]);
    }
  }

  GifFile gif;
  PixelPool pool;
  Picture shown;         ///< with the frame that was drawn last
  Picture under;         ///< without it
  std::size_t drawn = 0; ///< how many frames have been
};

CGImageSource::CGImageSource(std::unique_ptr<Frames> frames) : frames_(std::move(frames)) {}

CGImageSource::~CGImageSource() = default;

std::shared_ptr<CGImageSource> CGImageSource::createWithData(const Data& bytes) {
  auto gif = readGif(bytes);
  if (!gif) return nullptr;
  return std::make_shared<CGImageSource>(std::make_unique<Frames>(std::move(*gif)));
}

std::size_t CGImageSource::count() const {
  return frames_->gif.frames.size();
}

std::shared_ptr<const CGImage> CGImageSource::createImageAtIndex(std::size_t index) {
  if (index >= count() || !frames_->gif.frames[index].numbers) return nullptr;
  // The frame that was asked for last is not drawn again.
  if (index + 1 != frames_->drawn) frames_->drawThrough(index);
  const GifFile& gif = frames_->gif;
  const auto row = static_cast<std::size_t>(gif.width) * sizeof(std::uint32_t);
  return CGImage::fromPixels(
      Data(frames_->shown, frames_->shown.get(), row * static_cast<std::size_t>(gif.height)),
      gif.width, gif.height, row, CGImage::Format::BGRA);
}

Value::Dictionary CGImageSource::copyPropertiesAtIndex(std::size_t index) const {
  if (index >= count() || !frames_->gif.frames[index].delay) return {};
  const double delay = *frames_->gif.frames[index].delay / 100.0;
  return {{kCGImagePropertyGIFDictionary,
           Value::Dictionary{
               {kCGImagePropertyGIFUnclampedDelayTime, delay},
               {kCGImagePropertyGIFDelayTime, delay < shortestDelay ? usualDelay : delay}}}};
}

} // namespace zuvi
