#pragma once

#include "sandbox/core/Server.h"
#include "sandbox/core/text/Json.h"
#include "tests/sandbox/HttpClient.h"
#include "tests/sandbox/Samples.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace zuvi::sandbox::test {

/// A running server with a folder of its own, and a client of the merchant "demo".
class ServerFixture : public testing::Test {
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
             std::vector<std::string> headers = {}, const std::string& body = {}) {
    headers.push_back("Authorization: Bearer " + clientId_);
    return client_.ask(method, server_->address() + path, headers, body);
  }

  Answer upload(const std::string& method, const std::string& path, const SampleForm& form) {
    return ask(method, path, {"Content-Type: " + formType}, form.body());
  }

  Answer patch(const std::string& documentId, const std::string& json) {
    return ask("PATCH", "/v1/documents/" + documentId, {"Content-Type: application/json"}, json);
  }

  static Json json(const Answer& answer) { return parseJson(answer.body).value_or(Json()); }
  static std::string idOf(const Answer& answer) {
    return stringMember(json(answer), "id").value_or("no id");
  }
  static std::string messageOf(const Answer& answer) {
    return stringMember(json(answer), "message").value_or("no message");
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
  HttpClient client_;
  std::string clientId_ = "demo";
  std::unique_ptr<Server> server_;
};

} // namespace zuvi::sandbox::test
