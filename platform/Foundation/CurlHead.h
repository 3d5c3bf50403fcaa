#pragma once

#include "platform/Foundation/URLSession.h"

#include <string_view>

namespace zuvi {

/// The head of an answer as it arrives, line by line.
class CurlHead {
public:
  /// False when there is more of it than any server has a reason to send.
  bool add(std::string_view line);

  URLResponse response;

private:
  std::size_t received_ = 0; ///< bytes, of interim answers too
};

} // namespace zuvi
