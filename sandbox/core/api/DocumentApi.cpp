#include "sandbox/core/api/Api.h"

#include "sandbox/core/api/DocumentTypes.h"
#include "sandbox/core/api/RecordJson.h"
#include "sandbox/core/api/Upload.h"

#include <algorithm>

namespace zuvi::sandbox {
namespace {

Response documentResponse(int status, const Document& document) {
  Response response;
  response.status = status;
  response.body = jsonText(documentJson(document));
  return response;
}

bool hasField(const Document& document, const std::string& id) {
  return std::any_of(document.fields.begin(), document.fields.end(),
                     [&](const OcrField& field) { return field.id == id; });
}

Result<FieldValues> readValues(const Request& request, const Document& document) {
  const auto json = parseJson(request.content());
  if (!json || !json->is_object()) return Error{"the body is no JSON object"};
  const auto fields = json->find("fields");
  if (fields == json->end() || !fields->is_array() || json->size() != 1)
    return Error{"the body is not an object of the one list \"fields\""};
  FieldValues values;
  for (const Json& field : *fields) {
    auto id = stringMember(field, "id");
    auto value = stringMember(field, "value");
    if (!id || !value || field.size() != 2)
      return Error{"a field is not an object of the two texts \"id\" and \"value\""};
    if (!hasField(document, *id)) return Error{"the document has no field of one of the ids"};
    values.emplace_back(std::move(*id), std::move(*value));
  }
  return values;
}

} // namespace

Response Api::submitDocument(const Request& request, const std::string& identityId) {
  const auto upload =
      readUpload(request, {"picture", UploadFile::picture, UploadFields::typeAndSide, "front"});
  if (!upload) return messageResponse(400, upload.error().message);
  const DocumentType& type = *findDocumentType(upload->type);
  Document document;
  document.identityId = identityId;
  document.type = upload->type;
  document.cardType = type.cardType;
  if (!type.hasBack) document.fields = readFields(type);
  const auto stored = store_.addDocument(std::move(document), upload->bytes);
  if (!stored) return messageResponse(500, stored.error().message);
  return documentResponse(201, *stored);
}

Response Api::addBack(const Request& request, const Document& document) {
  const auto upload =
      readUpload(request, {"picture", UploadFile::picture, UploadFields::typeAndSide, "back"});
  if (!upload) return messageResponse(400, upload.error().message);
  if (upload->type != document.type)
    return messageResponse(400, "\"type\" is not the type of this document");
  const DocumentType& type = *findDocumentType(upload->type);
  if (!type.hasBack) return messageResponse(400, "a document of this type has no back side");
  if (document.sides.size() > 1) return messageResponse(400, "the back side is already here");

  const auto fields = readFields(type);
  const auto done = store_.addBack(document.id, upload->bytes, fields);
  if (!done) return messageResponse(500, done.error().message);
  Document answered = document;
  answered.fields = fields;
  return documentResponse(200, answered);
}

Response Api::verifyDocument(const Request& request, const Document& document) {
  if (request.header("content-type").value_or("") != "application/json")
    return messageResponse(400, "Content-Type is not application/json");
  if (document.fields.empty())
    return messageResponse(400, "the fields are not known before the back side is here");
  const auto values = readValues(request, document);
  if (!values) return messageResponse(400, values.error().message);
  const auto done = store_.setFields(document.id, *values);
  if (!done) return messageResponse(500, done.error().message);
  const auto stored = store_.document(document.id);
  if (!stored) return messageResponse(500, stored.error().message);
  return documentResponse(200, *stored);
}

} // namespace zuvi::sandbox
