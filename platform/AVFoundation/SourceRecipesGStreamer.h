#pragma once

#include "platform/AVFoundation/CameraSourceGStreamer.h"

#include <optional>

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
  /// By how many degrees its pictures have to be turned, against the clock; absent when the stream
  /// itself may tell.
  std::function<std::optional<int>()> rotation = [] { return std::nullopt; };
};
/// Whether any of these forms of pictures can be used; also when none is known.
bool givesPictures(const GstCaps* offers);
SourceRecipe deviceRecipe(const CameraElement& camera);

/// The elements that turn raw pictures upright, to be put behind others. By that many degrees
/// against the clock, or as the stream's tags say.
std::string upright(std::optional<int> rotation);

} // namespace zuvi
