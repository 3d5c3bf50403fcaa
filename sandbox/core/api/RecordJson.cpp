#include "sandbox/core/api/RecordJson.h"

namespace zuvi::sandbox {
namespace {

Json metadataJson(const Metadata& metadata) {
  Json json = Json::object();
  for (const auto& [key, value] : metadata)
    json[key] = value;
  return json;
}

Json fileJson(const StoredFile& file) {
  return {{"name", file.name}, {"bytes", file.size}};
}

Json faceJson(const Face& face) {
  return {{"id", face.id},
          {"kind", face.kind == FaceKind::appended ? "appended" : "submitted"},
          {"arrived", face.arrived},
          {"photo", fileJson(face.photo)},
          {"metadata", metadataJson(face.metadata)}};
}

Json storedDocumentJson(const Document& document) {
  Json json = documentJson(document);
  json["arrived"] = document.arrived;
  json["sides"] = Json::array();
  for (const DocumentSide& side : document.sides)
    json["sides"].push_back(
        {{"side", side.side}, {"arrived", side.arrived}, {"picture", fileJson(side.picture)}});
  return json;
}

Json identityJson(const Identity& identity) {
  Json json = {{"id", identity.id},
               {"client", identity.clientId},
               {"arrived", identity.arrived},
               {"film", fileJson(identity.film)},
               {"metadata", metadataJson(identity.metadata)},
               {"faces", Json::array()},
               {"documents", Json::array()}};
  for (const Face& face : identity.faces)
    json["faces"].push_back(faceJson(face));
  for (const Document& document : identity.documents)
    json["documents"].push_back(storedDocumentJson(document));
  return json;
}

} // namespace

Json documentJson(const Document& document) {
  Json json = {{"id", document.id},
               {"identity", document.identityId},
               {"type", document.type},
               {"metadata", {{"cardType", document.cardType}}}};
  if (document.fields.empty()) return json;
  json["fields"] = Json::array();
  for (const OcrField& field : document.fields)
    json["fields"].push_back({{"id", field.id},
                              {"label", field.label},
                              {"required", field.required},
                              {"value", field.value},
                              {"verified", field.verified}});
  return json;
}

Json arrivalsJson(const Arrivals& arrivals) {
  Json json = {{"identities", Json::array()}, {"events", Json::array()}};
  for (const Identity& identity : arrivals.identities)
    json["identities"].push_back(identityJson(identity));
  for (const Event& event : arrivals.events)
    json["events"].push_back({{"number", event.number},
                              {"event", event.name},
                              {"arrived", event.arrived},
                              {"properties", parseJson(event.properties).value_or(Json())}});
  return json;
}

} // namespace zuvi::sandbox
