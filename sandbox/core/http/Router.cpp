#include "sandbox/core/http/Router.h"

#include "sandbox/core/text/PercentCoding.h"

#include <optional>

namespace zuvi::sandbox {
namespace {

std::string_view takeSegment(std::string_view& path) {
  const auto segment = path.substr(0, path.find('/'));
  path.remove_prefix(segment.size());
  return segment;
}

std::optional<PathArguments> matchPath(std::string_view pattern, std::string_view path) {
  PathArguments arguments;
  while (pattern.starts_with('/') && path.starts_with('/')) {
    pattern.remove_prefix(1);
    path.remove_prefix(1);
    const auto wanted = takeSegment(pattern);
    const auto segment = takeSegment(path);
    if (wanted == "*") {
      auto argument = decodePercent(segment);
      if (!argument || argument->empty()) return std::nullopt;
      arguments.push_back(std::move(*argument));
    } else if (wanted != segment) {
      return std::nullopt;
    }
  }
  if (!pattern.empty() || !path.empty()) return std::nullopt;
  return arguments;
}

} // namespace

Router::Match Router::match(std::string_view method, std::string_view path) const {
  // The HTTP layer leaves the body away by itself.
  if (method == "HEAD") method = "GET";
  Match match;
  for (const Route& route : routes_) {
    auto arguments = matchPath(route.pattern, path);
    if (!arguments) continue;
    if (route.method == method) return {&route, std::move(*arguments), {}};
    match.allowed += (match.allowed.empty() ? "" : ", ") + route.method;
  }
  return match;
}

} // namespace zuvi::sandbox
