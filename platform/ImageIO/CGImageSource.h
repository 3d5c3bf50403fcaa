#pragma once

#include <ZuviSDK/CoreGraphics/CGImage.h>
#include <ZuviSDK/Foundation/Value.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace zuvi {

// Of a frame's properties: a dictionary of the two delays in seconds. The second is what to play:
// a tenth of a second where a frame asks for less than a twentieth.
inline constexpr const char* kCGImagePropertyGIFDictionary = "{GIF}";
inline constexpr const char* kCGImagePropertyGIFUnclampedDelayTime = "UnclampedDelayTime";
inline constexpr const char* kCGImagePropertyGIFDelayTime = "DelayTime";

/// The frames of an animated picture. Frames are laid over one another as the file says, so each is
/// a whole picture. It does not change, so any thread may ask.
class CGImageSource {
public:
  /// Null when the bytes are no GIF, or one larger than a screen or the memory could hold. All
  /// frames are decoded here, with the help of another thread.
  static std::shared_ptr<CGImageSource> createWithData(const Data& bytes);

  /// How many frames the file holds, up to the first that breaks off.
  std::size_t count() const;
  /// Null when there is no such frame or it can't be decoded.
  std::shared_ptr<const CGImage> createImageAtIndex(std::size_t index) const;
  /// Without `kCGImagePropertyGIFDictionary` when the file gives the frame no delay.
  Value::Dictionary copyPropertiesAtIndex(std::size_t index) const;

private:
  static std::shared_ptr<CGImageSource> decode(const Data& bytes);

  struct Frame {
    std::shared_ptr<const CGImage> image; ///< null: it could not be decoded
    std::optional<int> delay;             ///< in hundredths of a second
  };
  std::vector<Frame> frames_;
};

} // namespace zuvi
