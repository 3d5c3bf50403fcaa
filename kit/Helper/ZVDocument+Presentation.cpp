#include "kit/Helper/ZVDocument+Presentation.h"

#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVLocalization.h"

namespace zuvi {

std::string name(ZVDocument document) {
  switch (document) {
  case ZVDocument::drivingLicense:
    return localized("drivingLicense");
  case ZVDocument::nationalId:
    return localized("nationalId");
  case ZVDocument::proofOfResidency:
    return localized("proofOfResidency");
  case ZVDocument::passport:
    return localized("passport");
  }
  return {};
}

std::optional<std::string> documentTitle(std::optional<ZVDocument> document) {
  if (!document) return std::nullopt;
  return name(*document) + ".";
}

std::shared_ptr<const UIImage> icon(ZVDocument document) {
  switch (document) {
  case ZVDocument::drivingLicense:
    return zvKYCImage("ZVDrivingLicenseIcon");
  case ZVDocument::nationalId:
    return zvKYCImage("ZVNationalIDIcon");
  case ZVDocument::proofOfResidency:
    return zvKYCImage("ZVProofOfResidencyIcon");
  case ZVDocument::passport:
    return zvKYCImage("ZVPassportIcon");
  }
  return nullptr;
}

} // namespace zuvi
