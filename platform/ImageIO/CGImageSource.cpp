#include "platform/ImageIO/CGImageSource.h"

#include "platform/ImageIO/GifFramesGiflib.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace zuvi {

namespace {

constexpr double shortestDelay = 0.05; // seconds; what asks for less gets the usual one
constexpr double usualDelay = 0.1;     // seconds

} // namespace

/// The frames of the file, and the canvas that they are laid over one another on.
struct CGImageSource::Frames {
  explicit Frames(GifFile file) : gif(std::move(file)) { clear(); }

  void clear() {
    canvas.assign(static_cast<std::size_t>(gif.width) * static_cast<std::size_t>(gif.height), 0);
    drawn = 0;
  }

  /// Calls `row` for each row of the frame that lies on the canvas, with the canvas's pixels, the
  /// frame's numbers and how many there are.
  template <class Row> void eachRow(const GifFrame& frame, Row row) {
    const int columns = std::clamp(gif.width - frame.left, 0, frame.width);
    const int rows = std::clamp(gif.height - frame.top, 0, frame.height);
    for (int y = 0; y < rows; y++) {
      const auto from = static_cast<std::size_t>(y) * static_cast<std::size_t>(frame.width);
      const auto to =
          static_cast<std::size_t>(frame.top + y) * static_cast<std::size_t>(gif.width) +
          static_cast<std::size_t>(frame.left);
      row(canvas.data() + to, frame.numbers.data() + from, columns);
    }
  }

  void dispose(const GifFrame& frame) {
    if (frame.disposal == GifFrame::Disposal::Restore) canvas.swap(before);
    if (frame.disposal == GifFrame::Disposal::Clear)
      eachRow(frame, [](std::uint32_t* pixels, const std::uint8_t*, int count) {
        std::fill_n(pixels, count, 0U);
      });
  }

  void lay(const GifFrame& frame) {
    if (frame.disposal == GifFrame::Disposal::Restore) before = canvas;
    eachRow(frame, [&frame](std::uint32_t* pixels, const std::uint8_t* numbers, int count) {
      for (int x = 0; x < count; x++)
        if (const std::uint32_t color = frame.colors[numbers[x]]) pixels[x] = color;
    });
  }

  /// Draws on until the frame of that index is there.
  void drawThrough(std::size_t index) {
    if (index < drawn) clear(); // from the beginning
    while (drawn <= index) {
      if (drawn > 0) dispose(gif.frames[drawn - 1]);
      lay(gif.frames[drawn++]);
    }
  }

  GifFile gif;
  std::vector<std::uint32_t> canvas;
  std::vector<std::uint32_t> before; ///< what a frame that is to vanish was laid over
  std::size_t drawn = 0;             ///< how many frames are on the canvas
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
  if (index >= count() || frames_->gif.frames[index].numbers.empty()) return nullptr;
  // The frame that was asked for last is not drawn again.
  if (index + 1 != frames_->drawn) frames_->drawThrough(index);
  const auto& canvas = frames_->canvas;
  return CGImage::fromPixels(Data(std::string(reinterpret_cast<const char*>(canvas.data()),
                                              canvas.size() * sizeof(std::uint32_t))),
                             frames_->gif.width, frames_->gif.height,
                             static_cast<std::size_t>(frames_->gif.width) * 4,
                             CGImage::Format::BGRA);
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
