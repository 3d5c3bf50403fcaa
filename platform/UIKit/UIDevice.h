#pragma once

#include <string>

namespace zuvi {

/// The machine and its system.
class UIDevice {
public:
  static UIDevice current() { return {}; }
  /// The running system's release, such as "6.1.0"; read anew at each call.
  std::string systemVersion() const;
};

} // namespace zuvi
