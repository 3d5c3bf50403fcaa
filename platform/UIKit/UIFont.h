#pragma once

#include "platform/CoreText/CTFont.h"

namespace zuvi {

using UIFont = CTFont;

} // namespace zuvi
