#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zuvi::sandbox {

struct ByteRange {
  std::uint64_t first = 0;
  std::uint64_t last = 0; ///< inclusive
};

enum class RangeKind { none, satisfiable, unsatisfiable };

struct RangeRequest {
  RangeKind kind = RangeKind::none;
  ByteRange range;
};

/// Reads a Range header for a file of that size. What is no single byte range counts as none.
RangeRequest readRange(std::optional<std::string_view> header, std::uint64_t size);

} // namespace zuvi::sandbox
