#pragma once

#include "platform/CoreGraphics/CGImage.h"
#include "platform/Foundation/Value.h"

#include <cstddef>
#include <memory>

namespace zuvi {

// Of a frame's properties: a dictionary of the two delays in seconds. The second is what to play:
// a tenth of a second where a frame asks for less than a twentieth.
inline constexpr const char* kCGImagePropertyGIFDictionary = "{GIF}";
inline constexpr const char* kCGImagePropertyGIFUnclampedDelayTime = "UnclampedDelayTime";
inline constexpr const char* kCGImagePropertyGIFDelayTime = "DelayTime";

/// The frames of an animated picture. Frames are laid over one another as the file says, so each is
/// a whole picture; asking for them in order costs least. One thread at a time.
class CGImageSource {
public:
  /// Null when the bytes are no GIF, or one larger than a screen could ever show.
  static std::shared_ptr<CGImageSource> createWithData(const Data& bytes);

  /// How many frames the file holds, up to the first that breaks off.
  std::size_t count() const;
  /// Null when there is no such frame or it can't be decoded.
  std::shared_ptr<const CGImage> createImageAtIndex(std::size_t index);
  /// Without `kCGImagePropertyGIFDictionary` when the file gives the frame no delay.
  Value::Dictionary copyPropertiesAtIndex(std::size_t index) const;

  struct Frames;
  explicit CGImageSource(std::unique_ptr<Frames> frames);
  ~CGImageSource();

private:
  std::unique_ptr<Frames> frames_;
};

} // namespace zuvi
