#pragma once

#include "platform/AVFoundation/PointersGStreamer.h"

#include <string>
#include <vector>

namespace zuvi {

/// A way to compress film.
struct FilmEncoder {
  const char* element;
  const char* launch; ///< from raw pictures to what the file holds
  bool fullRange;     ///< its format knows full-range colours only
};

/// What can be used on this machine, the best one first. Tries them out on the first call. Any
/// thread.
std::vector<FilmEncoder> filmEncoders();

/// The encoder failed in the middle of its work: later films do without it. The last one stays.
void dropFilmEncoder(const char* element);

/// The raw form in which pictures of these caps are given to the encoder: about 1280 x 720 where
/// they are larger.
GstMini<GstCaps> encoderInput(const FilmEncoder& encoder, const GstCaps* pictures);

/// Leads the end of the stream past an encoder that keeps no pictures back. Asked to flush,
/// OpenH264 gives itself an empty picture and then complains of it on the console.
void endWithoutFlush(GstElement* encoder);

} // namespace zuvi
