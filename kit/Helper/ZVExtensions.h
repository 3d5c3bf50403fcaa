#pragma once

#include <ZuviSDK/UIKit/UIColor.h>
#include <ZuviSDK/UIKit/UIFont.h>
#include <ZuviSDK/UIKit/UIImage.h>
#include <ZuviSDK/UIKit/UIViewController.h>
#include "kit/Main/Private/RawValue.h"

#include <functional>
#include <memory>
#include <string>

namespace zuvi {

enum class FontStyle { semiBold, bold, regular };

template <> struct RawValues<FontStyle> {
  static constexpr RawValue<FontStyle> all[] = {{FontStyle::semiBold, "SemiBold"},
                                                {FontStyle::bold, "Bold"},
                                                {FontStyle::regular, "Regular"}};
};

/// Registers the kit's own fonts; may be called any number of times.
void registerZVFonts();
/// The kit's font; null while it is not registered.
std::shared_ptr<const UIFont> zvSFProText(FontStyle style, double size);

/// A picture of the kit's bundle; null when there is none with that name.
std::shared_ptr<const UIImage> zvKYCImage(const std::string& name);
/// Loads a picture from an address on another queue. The completion is called on the main queue,
/// with null when nothing could be read or the bytes are not a picture.
void downloadImage(const URL& from, std::function<void(std::shared_ptr<const UIImage>)> completion);

/// RRGGBB in hexadecimal, with or without "#"; blanks around it are allowed. Other text gives
/// black.
UIColor colorFromHex(const std::string& hexString, double alpha = 1.0);

/// The palette's light colour where it is readable on that colour, else its dark one.
UIColor textColorOn(const UIColor& ground);

/// The top screen of the key window; null when no window is key or it is empty.
std::shared_ptr<UIViewController> zvKYCCurrentViewController();

} // namespace zuvi
