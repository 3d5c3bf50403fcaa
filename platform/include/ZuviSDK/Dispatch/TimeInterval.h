#pragma once

namespace zuvi {

/// Seconds, also since an arbitrary fixed moment; never runs backwards.
using TimeInterval = double;

} // namespace zuvi
