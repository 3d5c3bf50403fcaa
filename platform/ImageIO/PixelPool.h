#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace zuvi {

/// Memory for pictures of one size, several to a block, for a frame after a frame from the system
/// costs more than drawing it. A block lives as long as one of its pictures.
class PixelPool {
public:
  /// `pixels` a picture.
  explicit PixelPool(std::size_t pixels) : pixels_(pixels) {}

  /// Room for one picture, whatever was there before.
  std::shared_ptr<std::uint32_t> take();

private:
  std::size_t pixels_;
  std::shared_ptr<std::uint32_t> block_;
  std::size_t used_ = 0, room_ = 0; ///< in pictures, of the block
};

} // namespace zuvi
