#include "sandbox/core/FailedAnswer.h"

namespace zuvi::sandbox {
namespace {

Response dropped() {
  Response response;
  response.delivery = Delivery::dropped;
  return response;
}

Response withBody(const std::string& body, const std::string& contentType) {
  Response response;
  response.contentType = contentType;
  response.body = body;
  return response;
}

Response perform(const FailRule& rule, const Request& request,
                 const std::function<Response()>& operation) {
  switch (rule.action) {
  case FailAction::never:
    request.wait(std::nullopt);
    return dropped();
  case FailAction::drop:
    return dropped();
  case FailAction::nonJson:
    return withBody("<html><body>Bad gateway</body></html>", "text/html");
  case FailAction::empty:
    return withBody({}, "application/json");
  case FailAction::json:
    return withBody(rule.text, "application/json");
  case FailAction::message:
    return messageResponse(422, rule.text);
  case FailAction::status:
    return messageResponse(rule.status, "the sandbox was told to answer this");
  case FailAction::cut:
  case FailAction::truncate:
  case FailAction::delay:
    break;
  }
  Response response = operation();
  if (rule.action == FailAction::cut) response.delivery = Delivery::cutInBody;
  if (rule.action == FailAction::truncate) response.body.resize(response.body.size() / 2);
  return response;
}

} // namespace

Response answerUnderRules(const std::vector<FailRule>& rules, const Request& request,
                          const std::function<Response()>& operation) {
  const FailRule* deciding = nullptr;
  const FailRule* status = nullptr;
  for (const FailRule& rule : rules) {
    if (rule.action == FailAction::delay) {
      if (!request.wait(rule.delay)) return dropped();
    } else if (rule.action == FailAction::status) {
      status = status == nullptr ? &rule : status;
    } else {
      deciding = deciding == nullptr ? &rule : deciding;
    }
  }
  if (deciding == nullptr) deciding = status;
  if (deciding == nullptr) return operation();
  Response response = perform(*deciding, request, operation);
  if (status != nullptr) response.status = status->status;
  return response;
}

} // namespace zuvi::sandbox
