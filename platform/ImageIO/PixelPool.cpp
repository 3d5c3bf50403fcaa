#include "platform/ImageIO/PixelPool.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace zuvi {

namespace {
constexpr std::size_t hugePage = std::size_t{2} << 20;      // bytes
constexpr std::size_t largestBlock = std::size_t{16} << 20; // bytes, unless one picture is larger
} // namespace

std::shared_ptr<std::uint32_t> PixelPool::take() {
  if (used_ == room_) {
    const std::size_t size = pixels_ * sizeof(std::uint32_t);
    // Each block holds twice the one before it: few pictures need not take much.
    room_ = std::clamp(2 * room_, std::size_t{1},
                       std::max<std::size_t>(largestBlock / std::max<std::size_t>(size, 1), 1));
    const std::size_t bytes = room_ * size;
    void* memory = bytes < hugePage
                       ? std::malloc(bytes)
                       : std::aligned_alloc(hugePage, (bytes + hugePage - 1) / hugePage * hugePage);
    if (!memory) throw std::bad_alloc();
    if (bytes >= hugePage) madvise(memory, bytes, MADV_HUGEPAGE); // only a wish
    block_.reset(static_cast<std::uint32_t*>(memory),
                 [](std::uint32_t* freed) { std::free(freed); });
    used_ = 0;
  }
  return {block_, block_.get() + pixels_ * used_++};
}

} // namespace zuvi
