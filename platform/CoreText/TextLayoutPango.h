#pragma once

#include <pango/pango.h>

namespace zuvi {

/// The one context that all text is measured and drawn with, so that both agree.
PangoContext* textContext();

} // namespace zuvi
