#pragma once

#include "sandbox/core/store/Records.h"

#include <string_view>
#include <vector>

namespace zuvi::sandbox {

/// One kind of document that this back end takes.
struct DocumentType {
  std::string_view name; ///< as `type` travels
  std::string_view cardType;
  bool hasBack;
};

/// Null when there is no such kind.
const DocumentType* findDocumentType(std::string_view name);

/// What reading a document of that kind yields: always the same sample person.
std::vector<OcrField> readFields(const DocumentType& type);

} // namespace zuvi::sandbox
