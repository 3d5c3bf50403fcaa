#pragma once

#include "kit/Main/Private/RawValue.h"

namespace zuvi {

/// The languages of the kit's texts; a text that is missing appears in the first one.
enum class ZVLanguage { english, spanish, french, portugaly };

template <> struct RawValues<ZVLanguage> {
  static constexpr RawValue<ZVLanguage> all[] = {{ZVLanguage::english, "en"},
                                                 {ZVLanguage::spanish, "es"},
                                                 {ZVLanguage::french, "fr"},
                                                 {ZVLanguage::portugaly, "pt"}};
};

} // namespace zuvi
