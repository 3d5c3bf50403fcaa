#include "kit/Manager/ZVKYCManager.h"

#include <ZuviSDK/Foundation/URL.h>

#include <utility>

namespace zuvi {

namespace {

std::function<std::optional<Value::Dictionary>()>& metadataSource() {
  static std::function<std::optional<Value::Dictionary>()> source;
  return source;
}

/// The host's metadata as form fields, one level deep.
Value::Dictionary metadataFields() {
  Value::Dictionary fields;
  const auto metadata = metadataSource() ? metadataSource()() : std::nullopt;
  if (metadata)
    for (const auto& [key, value] : *metadata)
      fields["metadata[" + key + "]"] = value;
  return fields;
}

/// No request could follow one with blanks, line breaks or the like: they go into its address.
bool isUsableId(const std::string& id) {
  return id.find_first_of("/?#") == std::string::npos &&
         URL::fromString("https://localhost/" + id).has_value();
}

/// Reads the answer to a request that makes an object with an id.
ZVKYCNetworkManager::Completion readingId(ZVKYCManager::IdCompletion completion) {
  return [completion = std::move(completion)](const std::optional<Value>& json,
                                              const std::optional<Error>&) {
    std::optional<std::string> id, message;
    if (const auto* answer = json ? json->dictionary() : nullptr) {
      id = stringValue(*answer, "id");
      if (id && !isUsableId(*id)) id = std::nullopt;
      message = stringValue(*answer, "message");
    }
    completion(id, message);
  };
}

} // namespace

ZVKYCManager::ZVKYCManager()
    : authorization(std::nullopt, [this] { networkManager.authorization = *authorization; }) {}

ZVKYCManager& ZVKYCManager::shared() {
  static auto* instance = new ZVKYCManager;
  return *instance;
}

void ZVKYCManager::setMetadataSource(std::function<std::optional<Value::Dictionary>()> source) {
  metadataSource() = std::move(source);
}

void ZVKYCManager::getMerchant(MerchantCompletion completion) {
  networkManager.get("api/v1/merchants/me",
                     [completion = std::move(completion)](const std::optional<Value>& json,
                                                          const std::optional<Error>&) {
                       const auto* answer = json ? json->dictionary() : nullptr;
                       completion(answer ? std::make_shared<ZVKYCMerchant>(*answer) : nullptr);
                     });
}

void ZVKYCManager::createNewIdentity(const Data& document, IdCompletion completion) {
  networkManager.postVideo("v1/identities", document, "video", metadataFields(),
                           readingId(std::move(completion)));
}

void ZVKYCManager::appendFaceToIdentity(const std::string& identityId, const Data& document,
                                        IdCompletion completion) {
  networkManager.put("v1/identities/" + identityId, document, "photo", std::nullopt,
                     readingId(std::move(completion)));
}

void ZVKYCManager::submitNewFace(const std::string& identityId, const Data& photo,
                                 IdCompletion completion) {
  networkManager.postImage("v1/identities/" + identityId + "/faces", photo, "photo",
                           metadataFields(), readingId(std::move(completion)));
}

void ZVKYCManager::submitDocument(const std::string& identityId, const std::string& type,
                                  const Data& document, IdCompletion completion) {
  networkManager.postImage("v1/identities/" + identityId + "/documents", document, "picture",
                           Value::Dictionary{{"type", type}, {"side", "front"}},
                           readingId(std::move(completion)));
}

void ZVKYCManager::uploadNewPhoto(const std::string& documentId, const std::string& type,
                                  const Data& photo, ResultsCompletion completion) {
  networkManager.put("v1/documents/" + documentId, photo, "picture",
                     Value::Dictionary{{"side", "back"}, {"type", type}},
                     [completion = std::move(completion)](const std::optional<Value>& json,
                                                          const std::optional<Error>&) {
                       std::optional<std::vector<ZVOCRResult>> results;
                       std::optional<std::string> message;
                       if (const auto* answer = json ? json->dictionary() : nullptr) {
                         results = requiredResults(*answer);
                         if (!results) message = stringValue(*answer, "message");
                       }
                       completion(std::move(results), std::move(message));
                     });
}

void ZVKYCManager::verifyDocument(const std::string& documentId,
                                  const std::vector<ZVOCRResult>& results,
                                  std::function<void(bool)> completion) {
  Value::List fields;
  for (const ZVOCRResult& result : results)
    fields.emplace_back(
        Value::Dictionary{{"id", result.id().value_or("")}, {"value", result.value.value_or("")}});
  networkManager.patch("v1/documents/" + documentId,
                       Value(Value::Dictionary{{"fields", std::move(fields)}}),
                       [completion = std::move(completion)](const std::optional<Value>& json,
                                                            const std::optional<Error>&) {
                         const auto* answer = json ? json->dictionary() : nullptr;
                         const Value* taken = answer ? valueForKey(*answer, "fields") : nullptr;
                         completion(taken && taken->listOfDictionaries());
                       });
}

} // namespace zuvi
