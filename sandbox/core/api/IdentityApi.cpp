#include "sandbox/core/api/Api.h"

#include "sandbox/core/api/Upload.h"
#include "sandbox/core/text/Json.h"

namespace zuvi::sandbox {
namespace {

Response idResponse(int status, const std::string& id) {
  Response response;
  response.status = status;
  response.body = jsonText(Json{{"id", id}});
  return response;
}

} // namespace

Response Api::createIdentity(const Request& request) {
  return withClient(request, [&](const std::string& clientId) {
    const auto upload =
        readUpload(request, {"video", UploadFile::film, UploadFields::metadata, {}});
    if (!upload) return messageResponse(400, upload.error().message);
    const auto identity = store_.addIdentity(clientId, upload->bytes, upload->metadata);
    if (!identity) return messageResponse(500, identity.error().message);
    return idResponse(201, identity->id);
  });
}

Response Api::appendFace(const Request& request, const std::string& identityId) {
  const auto upload = readUpload(request, {"photo", UploadFile::picture, UploadFields::none, {}});
  if (!upload) return messageResponse(400, upload.error().message);
  const auto face = store_.addFace(identityId, FaceKind::appended, upload->bytes, {});
  if (!face) return messageResponse(500, face.error().message);
  return idResponse(200, identityId);
}

Response Api::submitFace(const Request& request, const std::string& identityId) {
  const auto upload =
      readUpload(request, {"photo", UploadFile::picture, UploadFields::metadata, {}});
  if (!upload) return messageResponse(400, upload.error().message);
  const auto face =
      store_.addFace(identityId, FaceKind::submitted, upload->bytes, upload->metadata);
  if (!face) return messageResponse(500, face.error().message);
  return idResponse(201, face->id);
}

} // namespace zuvi::sandbox
