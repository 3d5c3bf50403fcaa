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

/// Makes the kit's own fonts known to the system; may run any number of times.
void registerZVFonts();
/// The kit's face; null while its font is not registered.
std::shared_ptr<const UIFont> zvSFProText(FontStyle style, double size);

/// A picture of the kit's bundle; null when there is none of that name.
std::shared_ptr<const UIImage> zvKYCImage(const std::string& name);
/// Reads an address off the main queue. The completion comes on the main queue, with null when
/// nothing could be read or it is no picture.
void downloadImage(const URL& from, std::function<void(std::shared_ptr<const UIImage>)> completion);

/// RRGGBB in hexadecimal, with or without "#", blanks around it allowed. What is no number is
/// black.
UIColor colorFromHex(const std::string& hexString, double alpha = 1.0);

/// White where it can be read on that colour, else the dark of the kit's texts.
UIColor textColorOn(const UIColor& ground);

/// The screen that is in front of the person; null when no window has the keys or it is empty.
std::shared_ptr<UIViewController> zvKYCCurrentViewController();

} // namespace zuvi
