#include "sandbox/core/text/Json.h"

namespace zuvi::sandbox {
namespace {

// Writing a value recurses, so the depth of what is read must be bounded.
constexpr int deepest = 64;

} // namespace

std::optional<Json> parseJson(std::string_view text) {
  bool tooDeep = false;
  const auto watch = [&](int depth, Json::parse_event_t, Json&) {
    if (depth > deepest) tooDeep = true;
    return !tooDeep;
  };
  auto value = Json::parse(text, watch, false);
  if (tooDeep || value.is_discarded()) return std::nullopt;
  return value;
}

std::string jsonText(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::optional<std::string> stringMember(const Json& object, std::string_view key) {
  if (!object.is_object()) return std::nullopt;
  const auto found = object.find(std::string(key));
  if (found == object.end() || !found->is_string()) return std::nullopt;
  return found->get<std::string>();
}

} // namespace zuvi::sandbox
