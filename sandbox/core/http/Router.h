#pragma once

#include "sandbox/core/http/Request.h"
#include "sandbox/core/http/Response.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zuvi::sandbox {

/// What the variable segments of a path held, in order.
using PathArguments = std::vector<std::string>;
using RouteHandler = std::function<Response(const Request&, const PathArguments&)>;

struct Route {
  std::string method;
  std::string pattern;   ///< such as "/v1/identities/*/faces": a star takes one segment
  std::string operation; ///< the name that failure rules use; empty for what none can name
  RouteHandler handler;
  /// Who may ask, by the request's head; without it everybody.
  std::function<std::optional<Response>(const Request&)> admission = {};
};

/// Finds the route of a request. Built once, then only read.
class Router {
public:
  struct Match {
    const Route* route = nullptr;
    PathArguments arguments;
    std::string allowed; ///< the methods of that path, when only the method was wrong
  };

  void add(Route route) { routes_.push_back(std::move(route)); }
  Match match(std::string_view method, std::string_view path) const;

private:
  std::vector<Route> routes_;
};

} // namespace zuvi::sandbox
