#pragma once

#include <string_view>

namespace zuvi::sandbox {

/// The first frame of a film whose frames are JPEG pictures, so that the page can show something
/// in browsers that cannot play it. A piece of `film`; empty when there is none.
std::string_view firstJpegFrame(std::string_view film);

} // namespace zuvi::sandbox
