#pragma once

#include <ZuviSDK/Export.h>

namespace zuvi {

/// A moment, in seconds since 1970-01-01T00:00:00Z.
struct Date {
  double timeIntervalSince1970 = 0; ///< negative before; fractions count

  /// By the machine's clock, which may be set back.
  ZUVI_API static Date now();
  /// To the last fraction of a second.
  bool operator==(const Date&) const = default;
};

} // namespace zuvi
