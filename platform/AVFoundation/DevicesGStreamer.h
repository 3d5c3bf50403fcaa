#pragma once

#include "platform/AVFoundation/SourceRecipesGStreamer.h"

#include <vector>

namespace zuvi {

/// A camera that the machine lists.
struct FoundCamera {
  CameraDescription description; ///< with the position that the device itself tells
  std::string path;              ///< its device file; empty when it has none
  CameraElement element;
};

/// The machine's video cameras; none when the library or its plugins are missing.
std::vector<FoundCamera> findCameras();

/// The camera of that device file.
CameraElement cameraElementAt(const std::string& path);

/// Which way a camera looks, by the properties that its driver gives.
AVCaptureDevicePosition positionOf(const GstStructure* properties);

} // namespace zuvi
