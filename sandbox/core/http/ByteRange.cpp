#include "sandbox/core/http/ByteRange.h"

#include <algorithm>
#include <charconv>

namespace zuvi::sandbox {
namespace {

std::optional<std::uint64_t> number(std::string_view text) {
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

} // namespace

RangeRequest readRange(std::optional<std::string_view> header, std::uint64_t size) {
  static constexpr std::string_view unit = "bytes=";
  if (!header || !header->starts_with(unit)) return {};
  const auto text = header->substr(unit.size());
  const auto dash = text.find('-');
  if (dash == std::string_view::npos) return {};
  const auto first = number(text.substr(0, dash));
  const auto last = number(text.substr(dash + 1));
  if (dash == 0) {
    if (!last) return {};
    if (*last == 0 || size == 0) return {RangeKind::unsatisfiable, {}};
    return {RangeKind::satisfiable, {size - std::min(*last, size), size - 1}};
  }
  if (!first || (!last && dash + 1 != text.size())) return {};
  if (last && *last < *first) return {};
  if (*first >= size) return {RangeKind::unsatisfiable, {}};
  return {RangeKind::satisfiable, {*first, std::min(last.value_or(size - 1), size - 1)}};
}

} // namespace zuvi::sandbox
