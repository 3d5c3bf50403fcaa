#pragma once

#include "platform/AVFoundation/CameraStream.h"
#include "platform/AVFoundation/PointersGStreamer.h"

#include <string>

namespace zuvi {

/// The form of a camera's pictures that serves the use best, as the elements behind the camera that
/// make raw upright-scanned pictures of it; empty when none of the offers can be used.
///
/// A film wants pictures near 1280 x 720 at 30 a second; stills want large ones, at least ten a
/// second. Colours come before size; packed, Bayer and interlaced pictures are taken where they are
/// better by more than they cost. What lies in memory that only a driver can read is passed over.
std::string chooseFormat(const GstCaps* offers, CameraUse use);

} // namespace zuvi
