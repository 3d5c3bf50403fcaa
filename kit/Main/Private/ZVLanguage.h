#pragma once

#include "kit/Main/Private/RawValue.h"

namespace zuvi {

/// The languages of the kit's texts; the first is what stands in for the others.
enum class ZVLanguage { english, spanish, french, portugaly };

template <> struct RawValues<ZVLanguage> {
  static constexpr RawValue<ZVLanguage> all[] = {{ZVLanguage::english, "en"},
                                                 {ZVLanguage::spanish, "es"},
                                                 {ZVLanguage::french, "fr"},
                                                 {ZVLanguage::portugaly, "pt"}};
};

} // namespace zuvi
