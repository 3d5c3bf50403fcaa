#pragma once

#include <ZuviSDK/Foundation/Data.h>

#include <memory>
#include <optional>
#include <string>

namespace zuvi {

class ZVKYCCameraViewController;
class ZVUploadViewController;

/// Which document a step is about, and whose it is. Each step passes it on to the next.
struct DocumentStep {
  bool isRequired = true; ///< whether the index is one of the required documents
  int index = 0;
  std::optional<std::string> identity;
};

// The steps of one document, complete with the fields that they get from their creator.

std::shared_ptr<ZVKYCCameraViewController> frontCamera(const DocumentStep& step);
/// `front` is the picture of the document's front.
std::shared_ptr<ZVKYCCameraViewController> backCamera(const DocumentStep& step, const Data& front);
/// `back` is absent for a document with one side.
std::shared_ptr<ZVUploadViewController> documentUpload(const DocumentStep& step, const Data& front,
                                                       const std::optional<Data>& back);

} // namespace zuvi
