// The event for each photograph.

#include "kit/Helper/ZVAnalyticsManager.h"
#include "kit/Helper/ZVMixpanelEvents.h"
#include "kit/Main/Private/ZVKYCMerchant.h"
#include "kit/UI/ViewControllers/ZVKYCCameraViewController.h"

namespace zuvi {

void ZVKYCCameraViewController::trackPhoto() const {
  const bool front = type == ZVKYCCameraType::ineFront;
  const auto kind = document();
  if (!kind) return;
  switch (*kind) {
  case ZVDocument::nationalId:
    return ZVAnalyticsManager::track(front ? MixpanelEvent::nationalIdFrontTakePhotoClicked
                                           : MixpanelEvent::nationalIdBackTakePhotoClicked);
  case ZVDocument::drivingLicense:
    return ZVAnalyticsManager::track(front ? MixpanelEvent::driverLicenseFrontTakePhotoClicked
                                           : MixpanelEvent::driverLicenseBackTakePhotoClicked);
  case ZVDocument::passport:
    return ZVAnalyticsManager::track(MixpanelEvent::passportTakePhotoClicked);
  case ZVDocument::proofOfResidency:
    return ZVAnalyticsManager::track(MixpanelEvent::proofOfResidencyTakePhotoClicked);
  }
}

} // namespace zuvi
