#pragma once

#include <ZuviSDK/CoreGraphics/CGImage.h>
#include "platform/ImageIO/GifReader.h"
#include "platform/ImageIO/PixelPool.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace zuvi {

/// Lays frames over one another, as each says that the one before it is to be left.
class GifCanvas {
public:
  GifCanvas(int width, int height)
      : width_(width), height_(height), pool_(static_cast<std::size_t>(width) * height) {}

  /// The whole picture that the frame makes; it must have its numbers.
  std::shared_ptr<const CGImage> lay(const GifFrame& frame);

private:
  /// A picture of the whole canvas; null is a clear one.
  using Picture = std::shared_ptr<const std::uint32_t>;

  std::size_t size() const { return static_cast<std::size_t>(width_) * height_; }
  int columns(const GifFrame& frame) const;
  int rows(const GifFrame& frame) const;
  bool covers(const GifFrame& frame) const;
  std::size_t offset(const GifFrame& frame, int row) const;
  std::shared_ptr<std::uint32_t> copy(const Picture& from);
  Picture leave(const GifFrame& frame, const Picture& shown);

  int width_, height_; ///< in pixels
  PixelPool pool_;
  Picture ground_; ///< what the next frame is laid over
};

} // namespace zuvi
