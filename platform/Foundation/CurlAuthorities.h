#pragma once

#include "platform/Foundation/Data.h"

#include <string>

namespace zuvi {

/// The certificate authorities that every session trusts beside the system's.
class CurlAuthorities {
public:
  static void setAdditional(const std::string& pemFile);
  static Data additional();
  /// Tells the transfer `easy` whom to trust.
  static void apply(void* easy);
};

} // namespace zuvi
