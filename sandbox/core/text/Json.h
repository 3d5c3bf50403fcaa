#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace zuvi::sandbox {

/// Key order is kept, so that what a developer wrote comes back in the same order.
using Json = nlohmann::ordered_json;

/// Absent when the text is no JSON or is nested deeper than anything sensible.
std::optional<Json> parseJson(std::string_view text);

/// Compact text; bytes that are no UTF-8 are replaced, so it never fails.
std::string jsonText(const Json& value);

/// The member if it is there and a string.
std::optional<std::string> stringMember(const Json& object, std::string_view key);

} // namespace zuvi::sandbox
