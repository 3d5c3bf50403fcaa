#pragma once

#include "platform/AVFoundation/PointersGStreamer.h"

#include <array>
#include <string>

namespace zuvi {

using Rgb = std::array<int, 3>;

/// What a player makes of a film.
struct FilmFacts {
  int streams = 0;
  double seconds = 0; ///< as the file tells
  int frames = 0;     ///< that were decoded
  double end = 0;     ///< when the last of them is over
  int width = 0, height = 0;
  Rgb center{}; ///< middle of the first picture
};
/// Decodes the whole file; all zero when it cannot be read.
FilmFacts readFilm(const std::string& path);

/// A picture of one colour.
CameraFrame solidFrame(int width, int height, Rgb colour, GstClockTime time);

} // namespace zuvi
