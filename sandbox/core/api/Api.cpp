#include "sandbox/core/api/Api.h"

#include "sandbox/core/api/Operations.h"

namespace zuvi::sandbox {

namespace {
constexpr std::string_view scheme = "Bearer ";
}

Api::Api(Store& store, Merchants merchants, std::function<std::string()> address)
    : store_(store), merchants_(std::move(merchants)), address_(std::move(address)) {}

void Api::addRoutes(Router& router) {
  const auto add = [&](const char* method, const char* pattern, std::string_view name,
                       RouteHandler handler) {
    router.add({method, pattern, std::string(name), std::move(handler),
                [this](const Request& request) { return refusal(request); }});
  };
  add("GET", "/api/v1/merchants/me", operation::merchant,
      [this](const Request& request, const PathArguments&) { return merchant(request); });
  add("POST", "/v1/identities", operation::identity,
      [this](const Request& request, const PathArguments&) { return createIdentity(request); });
  add("PUT", "/v1/identities/*", operation::appendFace,
      [this](const Request& request, const PathArguments& arguments) {
        return withIdentity(request, arguments[0],
                            [&] { return appendFace(request, arguments[0]); });
      });
  add("POST", "/v1/identities/*/faces", operation::face,
      [this](const Request& request, const PathArguments& arguments) {
        return withIdentity(request, arguments[0],
                            [&] { return submitFace(request, arguments[0]); });
      });
  add("POST", "/v1/identities/*/documents", operation::document,
      [this](const Request& request, const PathArguments& arguments) {
        return withIdentity(request, arguments[0],
                            [&] { return submitDocument(request, arguments[0]); });
      });
  add("PUT", "/v1/documents/*", operation::photo,
      [this](const Request& request, const PathArguments& arguments) {
        return withDocument(request, arguments[0],
                            [&](const Document& found) { return addBack(request, found); });
      });
  add("PATCH", "/v1/documents/*", operation::verify,
      [this](const Request& request, const PathArguments& arguments) {
        return withDocument(request, arguments[0],
                            [&](const Document& found) { return verifyDocument(request, found); });
      });
}

std::optional<Response> Api::refusal(const Request& request) const {
  const auto header = request.header("authorization");
  if (!header) return messageResponse(401, "the request has no Authorization");
  if (!header->starts_with(scheme))
    return messageResponse(401, "Authorization is not \"Bearer\" and a client id");
  if (!merchants_.knows(std::string(header->substr(scheme.size()))))
    return messageResponse(401, "the client id is not known");
  return std::nullopt;
}

Response Api::withClient(const Request& request, const ClientAction& action) const {
  if (auto refused = refusal(request)) return *refused;
  return action(std::string(request.header("authorization")->substr(scheme.size())));
}

Response Api::withIdentity(const Request& request, const std::string& identityId,
                           const std::function<Response()>& action) const {
  return withClient(request, [&](const std::string& clientId) {
    const auto owner = store_.ownerOfIdentity(identityId);
    if (!owner) return messageResponse(500, owner.error().message);
    if (*owner != clientId) return messageResponse(404, "there is no identity of that id");
    return action();
  });
}

Response Api::withDocument(const Request& request, const std::string& documentId,
                           const std::function<Response(const Document&)>& action) const {
  return withClient(request, [&](const std::string& clientId) {
    const auto owner = store_.ownerOfDocument(documentId);
    if (!owner) return messageResponse(500, owner.error().message);
    if (*owner != clientId) return messageResponse(404, "there is no document of that id");
    const auto document = store_.document(documentId);
    if (!document) return messageResponse(500, document.error().message);
    return action(*document);
  });
}

Response Api::merchant(const Request& request) const {
  return withClient(request, [&](const std::string& clientId) {
    Response response;
    response.body = merchants_.answer(clientId, address_()).value_or("{}");
    return response;
  });
}

} // namespace zuvi::sandbox
