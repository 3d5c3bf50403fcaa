#pragma once

#include "sandbox/core/Merchants.h"
#include "sandbox/core/http/Router.h"
#include "sandbox/core/store/Store.h"

#include <functional>
#include <optional>
#include <string>

namespace zuvi::sandbox {

/// The REST operations over a store. Answers on any thread.
class Api {
public:
  /// `address` is that of this server, without a slash at its end.
  Api(Store& store, Merchants merchants, std::function<std::string()> address);

  /// The routes hold a reference to this object.
  void addRoutes(Router& router);

private:
  using ClientAction = std::function<Response(const std::string& clientId)>;

  std::optional<Response> refusal(const Request& request) const;
  Response withClient(const Request& request, const ClientAction& action) const;
  Response withIdentity(const Request& request, const std::string& identityId,
                        const std::function<Response()>& action) const;
  Response withDocument(const Request& request, const std::string& documentId,
                        const std::function<Response(const Document&)>& action) const;

  Response merchant(const Request& request) const;
  Response createIdentity(const Request& request);
  Response appendFace(const Request& request, const std::string& identityId);
  Response submitFace(const Request& request, const std::string& identityId);
  Response submitDocument(const Request& request, const std::string& identityId);
  Response addBack(const Request& request, const Document& document);
  Response verifyDocument(const Request& request, const Document& document);

  Store& store_;
  Merchants merchants_;
  std::function<std::string()> address_;
};

} // namespace zuvi::sandbox
