#pragma once

#include <ZuviSDK/CoreText/CTFont.h>

namespace zuvi {

/// A font as views take it.
using UIFont = CTFont;

} // namespace zuvi
