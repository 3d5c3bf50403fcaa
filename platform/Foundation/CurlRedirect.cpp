#include "platform/Foundation/CurlRedirect.h"

#include "platform/Foundation/HeaderText.h"

#include <algorithm>

namespace zuvi {

namespace {

bool isRedirect(int status) {
  return (status >= 301 && status <= 303) || status == 307 || status == 308;
}

bool hasBytes(const std::optional<HTTPBody>& body) {
  return body && std::any_of(body->begin(), body->end(), [](const Data& d) { return !d.empty(); });
}

void drop(URLRequest& request, std::initializer_list<std::string_view> names) {
  std::erase_if(request.allHTTPHeaderFields, [&](const auto& field) {
    return std::find(names.begin(), names.end(), lowerCase(field.first)) != names.end();
  });
}

} // namespace

std::optional<CurlAddress> followRedirect(const CurlAddress& from, int status,
                                          const std::string& location, URLRequest& request) {
  if (!isRedirect(status) || location.empty()) return std::nullopt;
  auto target = from.resolve(location);
  if (!target) return std::nullopt;
  const std::string& method = request.httpMethod;
  const bool asks = (status == 303 && method != "GET" && method != "HEAD") ||
                    ((status == 301 || status == 302) && method == "POST");
  const bool trusted = from.mayConfideIn(*target);
  if (!asks && !trusted && hasBytes(request.httpBody)) return std::nullopt;
  if (asks) {
    request.httpMethod = "GET";
    request.httpBody.reset();
    drop(request, {"content-type", "content-encoding", "content-language"});
  }
  if (!trusted) drop(request, {"authorization", "cookie", "proxy-authorization"});
  return target;
}

} // namespace zuvi
