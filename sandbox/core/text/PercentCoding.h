#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zuvi::sandbox {

/// Undoes percent-encoding and nothing else: a plus sign stays one. Absent on a broken escape.
std::optional<std::string> decodePercent(std::string_view text);

/// The still encoded value of the first pair of that key in a query.
std::optional<std::string_view> queryValue(std::string_view query, std::string_view key);

/// A relative path as it may stand in a link: everything unusual is escaped, slashes stay.
std::string encodePath(std::string_view path);

} // namespace zuvi::sandbox
