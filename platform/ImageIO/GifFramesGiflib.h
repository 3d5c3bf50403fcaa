#pragma once

#include "platform/Foundation/Data.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace zuvi {

/// One frame as the file holds it: a rectangle of colour numbers.
struct GifFrame {
  enum class Disposal { Keep, Clear, Restore };

  int left = 0, top = 0, width = 0, height = 0;
  std::unique_ptr<std::uint8_t[]> numbers; ///< width * height; null: it could not be decoded
  std::array<std::uint32_t, 256> colors{}; ///< BGRA as a number; zero is transparent
  Disposal disposal = Disposal::Keep;      ///< what becomes of it before the next one
  std::optional<int> delay;                ///< in hundredths of a second
};

struct GifFile {
  int width = 0, height = 0;
  std::vector<GifFrame> frames;
};

/// Absent when the bytes are no GIF or it is too large. A file that breaks off gives the frames
/// before, and the broken one without its numbers.
std::optional<GifFile> readGif(const Data& bytes);

} // namespace zuvi
