#include "platform/ImageIO/PixelPool.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>

namespace zuvi {

namespace {
constexpr std::size_t hugePage = std::size_t{2} << 20;      // bytes
constexpr std::size_t largestBlock = std::size_t{16} << 20; // bytes, unless one picture is larger

/// From the system, and back to it. The program's allocator would take a large block that is freed
/// as a sign to keep as much, from then on, for each thread.
std::shared_ptr<std::uint32_t> mapBlock(std::size_t wanted) {
  const std::size_t bytes = (wanted + hugePage - 1) / hugePage * hugePage;
  void* mapped =
      mmap(nullptr, bytes + hugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) throw std::bad_alloc();
  std::size_t room = bytes + hugePage;
  void* aligned = mapped;
  std::align(hugePage, bytes, aligned, room);
  madvise(aligned, bytes, MADV_HUGEPAGE); // only a wish
  return {static_cast<std::uint32_t*>(aligned),
          [mapped, bytes](std::uint32_t*) { munmap(mapped, bytes + hugePage); }};
}
} // namespace

std::shared_ptr<std::uint32_t> PixelPool::take() {
  if (used_ == room_) {
    const std::size_t size = pixels_ * sizeof(std::uint32_t);
    // Each block holds twice the one before it: few pictures need not take much.
    room_ = std::clamp(2 * room_, std::size_t{1},
                       std::max<std::size_t>(largestBlock / std::max<std::size_t>(size, 1), 1));
    if (room_ * size >= hugePage)
      block_ = mapBlock(room_ * size);
    else
      block_ = {new std::uint32_t[room_ * pixels_], std::default_delete<std::uint32_t[]>()};
    used_ = 0;
  }
  return {block_, block_.get() + pixels_ * used_++};
}

} // namespace zuvi
