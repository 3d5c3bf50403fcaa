#pragma once

#include <ZuviSDK/Foundation/Data.h>

#include <string>

namespace zuvi {

/// Which servers every session trusts: those whose certificate the system's authorities vouch for,
/// or the additional ones, over a connection that is safe today.
class CurlTrust {
public:
  static void setAdditional(const std::string& pemFile);
  static Data additional();
  /// Tells the transfer `easy` whom to trust, and how.
  static void apply(void* easy);
};

} // namespace zuvi
