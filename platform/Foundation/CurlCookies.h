#pragma once

namespace zuvi {

/// The cookies of all sessions, which end with the process.
class CurlCookies {
public:
  /// Lets the transfer `easy` keep and send them.
  static void apply(void* easy);
};

} // namespace zuvi
