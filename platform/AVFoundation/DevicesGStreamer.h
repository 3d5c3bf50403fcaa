#pragma once

#include "platform/AVFoundation/CameraSides.h"
#include "platform/AVFoundation/SourceRecipesGStreamer.h"

namespace zuvi {

/// A camera that the machine lists.
struct FoundCamera {
  CameraCandidate candidate; ///< with the position that the device itself tells
  std::string path;          ///< its device file; empty when it has none
  CameraElement element;     ///< without a factory when its pictures cannot be had
};

/// Asks the device's driver, so not for the main thread.
FoundCamera describeDevice(const std::shared_ptr<GstDevice>& device);

/// The camera of that device file.
CameraElement cameraElementAt(const std::string& path);

/// Which way a camera looks, by the properties that its driver gives.
AVCaptureDevicePosition positionOf(const GstStructure* properties);

/// Whether any of these forms of pictures has colours.
bool hasColour(const GstCaps* formats);

} // namespace zuvi
