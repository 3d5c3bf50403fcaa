#pragma once

#include <optional>
#include <string>

namespace zuvi {

/// The certificate authorities that every session trusts beside the system's.
class CurlAuthorities {
public:
  static void setAdditional(const std::string& pemFile);
  /// Tells the transfer `easy` whom to trust.
  static void apply(void* easy);
};

} // namespace zuvi
