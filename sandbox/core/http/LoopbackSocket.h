#pragma once

#include "sandbox/core/Result.h"

#include <cstdint>

namespace zuvi::sandbox {

struct ListeningSocket {
  int descriptor = -1;
  std::uint16_t port = 0;
};

/// Listens on 127.0.0.1; port 0 takes a free one. The caller owns the descriptor.
Result<ListeningSocket> listenOnLoopback(std::uint16_t port);

} // namespace zuvi::sandbox
