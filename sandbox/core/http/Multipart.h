#pragma once

#include "sandbox/core/Result.h"

#include <string>
#include <string_view>
#include <vector>

namespace zuvi::sandbox {

struct FormField {
  std::string name;
  std::string value;
};

struct FormFile {
  std::string fieldName;
  std::string fileName;
  std::string contentType;
  std::string_view bytes; ///< inside the body that was read
};

/// A form with one file, which is how every upload arrives.
struct Form {
  std::vector<FormField> fields;
  FormFile file;
};

/// Reads a multipart body with no leniency: a client must frame it exactly right. The error says
/// which piece is wrong; it never repeats what the client sent.
Result<Form> readForm(std::string_view contentType, std::string_view body);

} // namespace zuvi::sandbox
