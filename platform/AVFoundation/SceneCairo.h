#pragma once

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>

#include <cstdint>
#include <vector>

namespace zuvi {

/// What a simulated camera sees: a drawing on which one small piece moves.
struct Scene {
  static constexpr int width = 1280, height = 720;

  /// Four bytes a pixel: blue, green, red, unused.
  struct Picture {
    int width = 0, height = 0;
    std::vector<std::uint8_t> pixels;
  };
  Picture background;
  Picture piece;
  /// The piece swings between these two places, all of them even.
  int fromX = 0, toX = 0, y = 0;

  static Scene draw(AVCaptureDevicePosition position);
  /// Where the piece is in the picture of that number.
  int pieceX(std::uint64_t frame) const;
};

} // namespace zuvi
