#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/Data.h>

#include <memory>

namespace zuvi {

/// An immutable picture of pixels, ready to be drawn. May be made and dropped on any thread.
class CGImage {
public:
  /// How pixels lie in memory, byte by byte.
  enum class Format {
    BGRA, ///< four bytes a pixel, premultiplied alpha
    BGRX, ///< four bytes a pixel, the last without meaning: opaque
    RGB,  ///< three bytes a pixel
  };

  /// Null when the sizes are not positive or `pixels` is too short. The bytes are not copied.
  ZUVI_API static std::shared_ptr<const CGImage> fromPixels(Data pixels, int width, int height,
                                                            std::size_t bytesPerRow, Format format);

  int width() const;  ///< in pixels
  int height() const; ///< in pixels
  /// The pixels as BGRA rows of 4 * width bytes.
  Data pixels() const;

  /// @cond
  struct Native;
  explicit CGImage(std::unique_ptr<Native> native);
  ~CGImage();
  const Native& native() const { return *native_; }
  /// @endcond

private:
  std::unique_ptr<Native> native_;
};

} // namespace zuvi
