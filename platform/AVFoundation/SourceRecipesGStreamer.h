#pragma once

#include "platform/AVFoundation/CameraSourceGStreamer.h"

namespace zuvi {

SourceRecipe pictureRecipe(const std::string& path);
SourceRecipe filmRecipe(const std::string& path);
/// A drawn moving scene: a face for the front, a card on a desk for the back.
SourceRecipe simulatedRecipe(AVCaptureDevicePosition position);

/// A camera's element, before its form of pictures is chosen.
struct CameraElement {
  std::string key;
  std::string factory; ///< such as "v4l2src"
  /// Points the element at its device.
  std::function<void(GstElement*)> configure;
  /// All forms in which the camera gives pictures; null when they cannot be had.
  std::function<std::shared_ptr<GstCaps>()> formats;
};
SourceRecipe deviceRecipe(const CameraElement& camera);

/// The form that comes nearest to 1280 x 720 pictures at 30 a second; empty when none can be used.
std::string chooseFormat(const GstCaps* formats);

} // namespace zuvi
