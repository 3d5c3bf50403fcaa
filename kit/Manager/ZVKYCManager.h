#pragma once

#include <ZuviSDK/Foundation/Data.h>
#include "kit/Main/Private/ZVKYCMerchant.h"
#include "kit/Main/Private/ZVOCRResult.h"
#include "kit/Manager/ZVKYCNetworkManager.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zuvi {

/// The kit's requests to the back end, one for each operation. Each completion is called once, on
/// the main queue; no request is repeated. A present id means success; a message is the back end's
/// own text.
class ZVKYCManager {
public:
  static ZVKYCManager& shared();
  /// Where the host's metadata comes from; `source` is called for each new identity and face.
  static void setMetadataSource(std::function<std::optional<Value::Dictionary>()> source);

  ZVKYCNetworkManager networkManager;
  /// Passed on to `networkManager`, also when absent.
  Observed<std::optional<std::string>> authorization;

  using MerchantCompletion = std::function<void(std::shared_ptr<const ZVKYCMerchant>)>;
  using IdCompletion =
      std::function<void(std::optional<std::string> id, std::optional<std::string> message)>;
  using ResultsCompletion = std::function<void(std::optional<std::vector<ZVOCRResult>> results,
                                               std::optional<std::string> message)>;

  /// Null when no answer came or it was not a JSON object.
  void getMerchant(MerchantCompletion completion);
  /// Makes a new identity from the selfie film.
  void createNewIdentity(const Data& document, IdCompletion completion);
  void appendFaceToIdentity(const std::string& identityId, const Data& document,
                            IdCompletion completion);
  void submitNewFace(const std::string& identityId, const Data& photo, IdCompletion completion);
  /// Makes a new document from the picture of its front; `type` is a raw value of `ZVDocument`.
  void submitDocument(const std::string& identityId, const std::string& type, const Data& document,
                      IdCompletion completion);
  /// Adds the picture of the back. The results are the required fields that were read.
  void uploadNewPhoto(const std::string& documentId, const std::string& type, const Data& photo,
                      ResultsCompletion completion);
  /// Sends the fields' values back; true when the back end accepted them.
  void verifyDocument(const std::string& documentId, const std::vector<ZVOCRResult>& results,
                      std::function<void(bool)> completion);

private:
  ZVKYCManager();
};

} // namespace zuvi
