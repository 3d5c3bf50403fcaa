#pragma once

#include "sandbox/core/Server.h"
#include "sandbox/core/text/Json.h"
#include "testing/backend/Samples.h"
#include "testing/backend/SessionFixture.h"
#include "testing/support/TemporaryFolder.h"

namespace zuvi::sandbox::test {

struct Answer {
  int error = 0; ///< of the transport; 0 when an answer came whole
  int status = 0;
  std::map<std::string, std::string> headers; ///< names in lower case
  std::string body;
};

/// A running server with a folder of its own, and a client of the merchant "demo".
class ServerFixture : public SessionFixture {
protected:
  void start(const std::vector<std::string>& failRules = {}) {
    ServerOptions options;
    options.failRules = *FailPlan::parse(failRules);
    start(std::move(options));
  }

  void start(ServerOptions options) {
    server_.reset();
    options.dataFolder = folder_.path("data");
    auto started = Server::start(std::move(options));
    ASSERT_TRUE(started) << started.error().message;
    server_ = std::move(*started);
  }

  Answer ask(const std::string& method, const std::string& path,
             std::map<std::string, std::string> headers = {}, const std::string& body = {}) {
    headers.try_emplace("Authorization", "Bearer " + clientId_);
    auto request = to(server_->address() + path);
    request.httpMethod = method;
    request.allHTTPHeaderFields = std::move(headers);
    if (method != "GET") request.httpBody = HTTPBody{Data(body)};
    request.timeoutInterval = timeout_;
    const auto outcome = send(request);
    if (!outcome.response) return {outcome.code(), 0, {}, {}};
    return {outcome.code(), int(outcome.response->statusCode), outcome.response->headers,
            outcome.data ? outcome.data->string() : ""};
  }

  Answer upload(const std::string& method, const std::string& path, const SampleForm& form) {
    return ask(method, path, {{"Content-Type", formType}}, form.body());
  }

  Answer patch(const std::string& documentId, const std::string& json) {
    return ask("PATCH", "/v1/documents/" + documentId, {{"Content-Type", "application/json"}},
               json);
  }

  static Json json(const Answer& answer) { return parseJson(answer.body).value_or(Json()); }
  static std::string idOf(const Answer& answer) {
    return stringMember(json(answer), "id").value_or("no id");
  }

  std::string newIdentity() { return idOf(upload("POST", "/v1/identities", SampleForm::ofFilm())); }
  std::string newDocument(const std::string& identityId, const std::string& type) {
    return idOf(upload("POST", "/v1/identities/" + identityId + "/documents",
                       SampleForm::ofDocument(type, "front")));
  }
  Answer addBack(const std::string& documentId, const std::string& type) {
    return upload("PUT", "/v1/documents/" + documentId, SampleForm::ofDocument(type, "back"));
  }

  zuvi::test::TemporaryFolder folder_;
  double timeout_ = 20;
  std::string clientId_ = "demo";
  std::unique_ptr<Server> server_;
};

} // namespace zuvi::sandbox::test
