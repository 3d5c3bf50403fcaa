#pragma once

#include <ZuviSDK/Foundation/Data.h>

#include <string>

namespace zuvi {

inline constexpr const char* AVVideoCodecKey = "AVVideoCodecKey";
inline constexpr const char* AVVideoCodecJPEG = "jpeg";

/// One encoded picture of a camera.
struct CMSampleBuffer {
  std::string codec;
  Data data;
};

} // namespace zuvi
