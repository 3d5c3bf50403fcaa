#include "sandbox/core/api/Tracking.h"

#include "sandbox/core/api/Operations.h"
#include "sandbox/core/text/Base64.h"
#include "sandbox/core/text/Json.h"
#include "sandbox/core/text/PercentCoding.h"

namespace zuvi::sandbox {
namespace {

std::string withoutLineBreaks(std::string_view text) {
  std::string joined;
  for (auto end = text.find("\r\n"); end != std::string_view::npos; end = text.find("\r\n")) {
    joined += text.substr(0, end);
    text.remove_prefix(end + 2);
  }
  joined += text;
  return joined;
}

} // namespace

Result<TrackedEvent> readTrackedEvent(std::string_view query) {
  const auto encoded = queryValue(query, "data");
  if (!encoded) return Error{"the query has no key \"data\""};
  const auto lines = decodePercent(*encoded);
  if (!lines) return Error{"\"data\" is not percent-encoded rightly"};
  const auto bytes = decodeBase64(withoutLineBreaks(*lines));
  if (!bytes) return Error{"\"data\" is no Base64"};
  const auto json = parseJson(*bytes);
  if (!json || !json->is_object()) return Error{"\"data\" holds no JSON object"};
  const auto name = stringMember(*json, "event");
  if (!name || name->empty()) return Error{"the event has no name under \"event\""};
  const auto properties = json->find("properties");
  if (properties == json->end() || !properties->is_object())
    return Error{"the event has no object under \"properties\""};
  return TrackedEvent{*name, jsonText(*properties)};
}

void addTrackingRoutes(Router& router, Store& store) {
  const auto take = [&store](const Request& request, const PathArguments&) {
    const auto event = readTrackedEvent(request.query);
    if (!event) return messageResponse(400, event.error().message);
    const auto stored = store.addEvent(event->name, event->properties);
    if (!stored) return messageResponse(500, stored.error().message);
    Response response;
    response.body = jsonText(Json{{"status", 1}});
    return response;
  };
  for (const char* method : {"POST", "GET"})
    router.add({method, "/track/", std::string(operation::track), take});
}

} // namespace zuvi::sandbox
