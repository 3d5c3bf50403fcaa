#pragma once

#include "sandbox/core/Result.h"
#include "sandbox/core/http/Request.h"
#include "sandbox/core/store/Records.h"

#include <string>
#include <string_view>

namespace zuvi::sandbox {

enum class UploadFile { film, picture };
enum class UploadFields { none, metadata, typeAndSide };

/// What the form of an operation must hold, and nothing more than that.
struct UploadRule {
  std::string_view fileField;
  UploadFile file = UploadFile::picture;
  UploadFields fields = UploadFields::none;
  std::string_view side; ///< with `typeAndSide`
};

struct Upload {
  std::string_view bytes; ///< inside the request's body
  Metadata metadata;
  std::string type;
};

/// Checks a multipart request to the letter; the error says what is wrong with it.
Result<Upload> readUpload(const Request& request, const UploadRule& rule);

} // namespace zuvi::sandbox
