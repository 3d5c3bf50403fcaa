#pragma once

#include <ZuviSDK/Foundation/Value.h>
#include <ZuviSDK/UIKit/UIColor.h>
#include "kit/Main/Private/ZVDocument.h"
#include "kit/Main/Private/ZVLanguage.h"

#include <optional>
#include <string>
#include <vector>

namespace zuvi {

/// Posted, without anything, after every answer to the question who the client is.
inline constexpr const char* merchantUpdatedNotification = "merchantUpdated";

/// Who the client is and how the flow is to look, as the back end says it.
class ZVKYCMerchant {
public:
  ZVKYCMerchant() = default;
  /// From the back end's JSON; what is missing or of the wrong type keeps its default.
  explicit ZVKYCMerchant(const Value::Dictionary& parameters);

  std::optional<std::string> displayName;
  std::optional<std::string> photoUrl;
  UIColor color = UIColor::bytes(33, 150, 243);
  ZVLanguage currentLanguage = ZVLanguage::english;
  std::vector<ZVDocument> requiredDocuments{ZVDocument::nationalId};
  std::vector<ZVDocument> optionalDocuments;

  /// The one at that place of the required or the optional ones; absent when there is none.
  std::optional<ZVDocument> document(bool isRequired, int index) const;
};

} // namespace zuvi
