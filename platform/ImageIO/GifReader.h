#pragma once

#include <ZuviSDK/Foundation/Data.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

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

/// Reads the frames of a GIF one after the other.
class GifReader {
public:
  /// Absent when the bytes are no GIF or it is too large.
  static std::optional<GifReader> open(const Data& bytes);

  int width() const;
  int height() const;
  /// Absent at the end. Of a file that breaks off within a frame, that one comes without its
  /// numbers, as the last.
  std::optional<GifFrame> next();

  struct File;

private:
  explicit GifReader(std::shared_ptr<File> file) : file_(std::move(file)) {}
  std::shared_ptr<File> file_;
};

} // namespace zuvi
