#include "sandbox/core/http/Response.h"

#include "sandbox/core/text/Json.h"

namespace zuvi::sandbox {

Response messageResponse(int status, const std::string& message) {
  Response response;
  response.status = status;
  response.body = jsonText(Json{{"message", message}});
  return response;
}

} // namespace zuvi::sandbox
