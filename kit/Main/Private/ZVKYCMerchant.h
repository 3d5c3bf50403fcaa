#pragma once

#include <ZuviSDK/Foundation/Value.h>
#include <ZuviSDK/UIKit/UIColor.h>
#include "kit/Main/Private/ZVDocument.h"
#include "kit/Main/Private/ZVLanguage.h"

#include <optional>
#include <string>
#include <vector>

namespace zuvi {

/// Posted, without object and user info, after every answer to `getMerchant`.
inline constexpr const char* merchantUpdatedNotification = "merchantUpdated";

/// The merchant's name, colour, language and documents, from the back end.
class ZVKYCMerchant {
public:
  ZVKYCMerchant() = default;
  /// From the back end's JSON; a field that is missing or has the wrong type keeps its default.
  explicit ZVKYCMerchant(const Value::Dictionary& parameters);

  std::optional<std::string> displayName;
  std::optional<std::string> photoUrl;
  UIColor color = UIColor::bytes(33, 150, 243);
  ZVLanguage currentLanguage = ZVLanguage::english;
  std::vector<ZVDocument> requiredDocuments{ZVDocument::nationalId};
  std::vector<ZVDocument> optionalDocuments;

  /// The required or optional document at that index; absent when there is none.
  std::optional<ZVDocument> document(bool isRequired, int index) const;
};

} // namespace zuvi
