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

/// What the kit asks of the back end, one request an operation. Each completion comes once, on the
/// main queue; nothing is repeated by itself. An id that is present means success, a message is the
/// back end's own words.
class ZVKYCManager {
public:
  static ZVKYCManager& shared();

  ZVKYCNetworkManager networkManager;
  /// Handed on to the transport, absent included.
  Observed<std::optional<std::string>> authorization;

  using MerchantCompletion = std::function<void(std::shared_ptr<const ZVKYCMerchant>)>;
  using IdCompletion =
      std::function<void(std::optional<std::string> id, std::optional<std::string> message)>;
  using ResultsCompletion = std::function<void(std::optional<std::vector<ZVOCRResult>> results,
                                               std::optional<std::string> message)>;

  /// Null when no answer came or it was no JSON object.
  void getMerchant(MerchantCompletion completion);
  /// A new identity from the selfie film.
  void createNewIdentity(const Data& document, IdCompletion completion);
  void appendFaceToIdentity(const std::string& identityId, const Data& document,
                            IdCompletion completion);
  void submitNewFace(const std::string& identityId, const Data& photo, IdCompletion completion);
  /// A new document from the picture of its front; `type` is a raw value of `ZVDocument`.
  void submitDocument(const std::string& identityId, const std::string& type, const Data& document,
                      IdCompletion completion);
  /// Adds the picture of the back. Results are the required fields that were read.
  void uploadNewPhoto(const std::string& documentId, const std::string& type, const Data& photo,
                      ResultsCompletion completion);
  /// Sends the fields' values back; true when the back end took them.
  void verifyDocument(const std::string& documentId, const std::vector<ZVOCRResult>& results,
                      std::function<void(bool)> completion);

private:
  ZVKYCManager();
};

} // namespace zuvi
