#pragma once

#include <ZuviSDK/Foundation/Data.h>
#include "platform/AVFoundation/PointersGStreamer.h"

#include <optional>

namespace zuvi {

/// The picture as a JPEG file at its full size. Waits for the encoder, but not for ever; absent
/// when it fails.
std::optional<Data> encodeStill(const CameraFrame& frame);

} // namespace zuvi
