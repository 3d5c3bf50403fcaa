#include "kit/UI/ViewControllers/DocumentStep.h"

#include <ZuviSDK/Foundation/Make.h>
#include "kit/UI/ViewControllers/ZVKYCCameraViewController.h"
#include "kit/UI/ViewControllers/ZVUploadViewController.h"

namespace zuvi {

namespace {

std::shared_ptr<ZVKYCCameraViewController> camera(const DocumentStep& step, ZVKYCCameraType side) {
  auto made = make<ZVKYCCameraViewController>();
  made->index = step.index;
  made->isRequired = step.isRequired;
  made->type = side;
  made->objectId = step.identity;
  return made;
}

} // namespace

std::shared_ptr<ZVKYCCameraViewController> frontCamera(const DocumentStep& step) {
  return camera(step, ZVKYCCameraType::ineFront);
}

std::shared_ptr<ZVKYCCameraViewController> backCamera(const DocumentStep& step, const Data& front) {
  auto made = camera(step, ZVKYCCameraType::ineBack);
  made->frontIneImage = front;
  return made;
}

std::shared_ptr<ZVUploadViewController> documentUpload(const DocumentStep& step, const Data& front,
                                                       const std::optional<Data>& back) {
  auto made = make<ZVUploadViewController>();
  made->documentIndex = step.index;
  made->isRequired = step.isRequired;
  made->identityId = step.identity.value_or("");
  made->frontData = front;
  made->backData = back;
  return made;
}

} // namespace zuvi
