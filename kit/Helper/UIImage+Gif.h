#pragma once

#include <ZuviSDK/Foundation/Data.h>
#include <ZuviSDK/UIKit/UIImageView.h>
#include "platform/ImageIO/CGImageSource.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zuvi {

// A series of pictures has one rate, a GIF a delay for each frame. So the greatest common divisor
// of all delays is the time slice, and each frame stands in the series as often as its delay needs:
// the same picture each time, decoded once. What can't be read prints a line and gives null. Any
// thread, but for `loadGif`.

/// A GIF of the kit's bundle.
std::shared_ptr<const UIImage> gifNamed(const std::string& name);
/// Waits for the bytes, also when they come over the network, where a minute is enough: not on the
/// main queue, nor where a session calls back.
std::shared_ptr<const UIImage> gifFromURL(const std::string& url);
std::shared_ptr<const UIImage> gifFromData(const Data& data);
/// Frames that can't be decoded are left out; null when none is left, and when the series would be
/// longer than a million.
std::shared_ptr<const UIImage> animatedImageWithSource(const CGImageSource& source);

/// In seconds; a tenth of one is the default and the least.
double delayForImageAtIndex(std::size_t index, const CGImageSource* source);
/// The same of a frame's properties.
double delayOfProperties(const Value::Dictionary& properties);
/// Zero when both are absent, the other when one is.
int gcdForPair(std::optional<int> a, std::optional<int> b);
/// One for an empty list.
int gcdForArray(const std::vector<int>& array);

/// Decodes off the main queue, then shows the picture, or nothing. Main queue.
void loadGif(const std::shared_ptr<UIImageView>& view, const std::string& name);

} // namespace zuvi
