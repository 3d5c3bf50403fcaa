#pragma once

#include <ZuviSDK/Foundation/Date.h>

#include <optional>
#include <string>

namespace zuvi {

/// Turns moments into text by a pattern such as "yyyy-MM-dd'T'HH:mm:ssZ".
class DateFormatter {
public:
  std::string dateFormat;
  /// A locale such as "en_US_POSIX"; absent: the user's.
  std::optional<std::string> locale;
  /// A zone such as "UTC"; absent: the device's.
  std::optional<std::string> timeZone;

  /// Empty when the pattern cannot be used.
  std::string string(Date date) const;
};

} // namespace zuvi
