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

// An animation has one fixed rate, but a GIF has a delay for each GIF frame. So the time slice is
// the greatest common divisor of all delays, and each picture is repeated until its delay is
// filled. It is decoded once. A GIF that can't be read prints a line and gives null. Any thread,
// except `loadGif`.

/// A GIF of the kit's bundle.
std::shared_ptr<const UIImage> gifNamed(const std::string& name);
/// Waits for the bytes, from the network for a minute at most. Do not call it on the main queue or
/// in a session's callback.
std::shared_ptr<const UIImage> gifFromURL(const std::string& url);
std::shared_ptr<const UIImage> gifFromData(const Data& data);
/// GIF frames that can't be decoded are left out. Null when none is left, or when the animation
/// would have more than a million pictures.
std::shared_ptr<const UIImage> animatedImageWithSource(const CGImageSource& source);

/// In seconds; the default and the minimum are a tenth of a second.
double delayForImageAtIndex(std::size_t index, const CGImageSource* source);
/// The same, from a GIF frame's properties.
double delayOfProperties(const Value::Dictionary& properties);
/// Zero when both are absent, the other when one is.
int gcdForPair(std::optional<int> a, std::optional<int> b);
/// 1 for an empty list.
int gcdForArray(const std::vector<int>& array);

/// Decodes on another queue, then shows the picture, or nothing if it failed. Main queue.
void loadGif(const std::shared_ptr<UIImageView>& view, const std::string& name);

} // namespace zuvi
