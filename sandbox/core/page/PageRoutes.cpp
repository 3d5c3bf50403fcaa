#include "sandbox/core/page/PageRoutes.h"

#include "sandbox/core/Embedded.h"
#include "sandbox/core/api/RecordJson.h"
#include "sandbox/core/http/ByteRange.h"
#include "sandbox/core/page/Page.h"
#include "sandbox/core/text/Uuid.h"

namespace zuvi::sandbox {
namespace {

constexpr auto contentSecurityPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; media-src 'self'; "
    "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

Response pageResponse(const Store& store) {
  const auto arrivals = store.arrivals();
  if (!arrivals) return messageResponse(500, arrivals.error().message);
  Response response;
  response.contentType = "text/html; charset=utf-8";
  response.headers.emplace_back("Content-Security-Policy", contentSecurityPolicy);
  response.body = livePage(*arrivals);
  return response;
}

/// Answers 304 while nothing new is there, so that asking often costs little.
Response arrivalsResponse(const Store& store, const std::string& run, const Request& request) {
  const std::string tag = "\"" + run + "-" + std::to_string(store.revision()) + "\"";
  Response response;
  response.headers.emplace_back("ETag", tag);
  if (request.header("if-none-match") == tag) {
    response.status = 304;
    response.contentType.clear();
    return response;
  }
  const auto arrivals = store.arrivals();
  if (!arrivals) return messageResponse(500, arrivals.error().message);
  response.body = jsonText(arrivalsJson(*arrivals));
  return response;
}

Response fileResponse(const Store& store, const Request& request, const std::string& name) {
  const auto path = store.file(name);
  std::error_code error;
  const auto size = path ? std::filesystem::file_size(*path, error) : 0;
  if (!path || error) return messageResponse(404, "there is no such file");
  Response response;
  response.contentType = path->extension() == ".mov" ? "video/quicktime" : "image/jpeg";
  response.headers.emplace_back("Accept-Ranges", "bytes");
  const auto [kind, range] = readRange(request.header("range"), size);
  if (kind == RangeKind::unsatisfiable) {
    response = messageResponse(416, "the file ends before that range");
    response.headers.emplace_back("Content-Range", "bytes */" + std::to_string(size));
    return response;
  }
  response.file = FileBody{*path, 0, size};
  if (kind == RangeKind::satisfiable) {
    response.status = 206;
    response.file = FileBody{*path, range.first, range.last - range.first + 1};
    response.headers.emplace_back("Content-Range", "bytes " + std::to_string(range.first) + "-" +
                                                       std::to_string(range.last) + "/" +
                                                       std::to_string(size));
  }
  return response;
}

} // namespace

void addPageRoutes(Router& router, const Store& store) {
  const auto add = [&](std::string pattern, RouteHandler handler) {
    router.add({"GET", std::move(pattern), {}, std::move(handler)});
  };
  add("/", [&store](const Request&, const PathArguments&) { return pageResponse(store); });
  // Two runs may reach the same revision with different contents.
  add("/arrivals.json", [&store, run = newUuid()](const Request& request, const PathArguments&) {
    return arrivalsResponse(store, run, request);
  });
  add("/files/*", [&store](const Request& request, const PathArguments& arguments) {
    return fileResponse(store, request, arguments[0]);
  });
  const auto ship = [&](const std::string& name, const std::string& type) {
    add("/" + name, [name, type](const Request&, const PathArguments&) {
      Response response;
      response.contentType = type;
      response.body = embeddedFile(name);
      return response;
    });
  };
  ship("page.css", "text/css; charset=utf-8");
  ship("page.js", "text/javascript; charset=utf-8");
  ship("operator.js", "text/javascript; charset=utf-8");
  ship("merchant.png", "image/png");
}

} // namespace zuvi::sandbox
