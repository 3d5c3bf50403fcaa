#include "sandbox/core/api/Upload.h"

#include "sandbox/core/api/DocumentTypes.h"
#include "sandbox/core/http/Multipart.h"

#include <algorithm>
#include <optional>

namespace zuvi::sandbox {
namespace {

bool looksLikeJpeg(std::string_view bytes) {
  return bytes.starts_with("\xff\xd8\xff");
}

bool looksLikeQuickTime(std::string_view bytes) {
  static constexpr std::string_view atoms[] = {"ftyp", "moov", "mdat", "wide", "free"};
  return bytes.size() >= 8 &&
         std::find(std::begin(atoms), std::end(atoms), bytes.substr(4, 4)) != std::end(atoms);
}

std::optional<Error> checkFile(const FormFile& file, const UploadRule& rule) {
  const bool film = rule.file == UploadFile::film;
  const std::string fileName = film ? "liveness.mov" : "user-profile.jpg";
  const std::string contentType = film ? "video/quicktime" : "image/jpeg";
  if (file.fieldName != rule.fileField)
    return Error{"the file's field must be named \"" + std::string(rule.fileField) + "\""};
  if (file.fileName != fileName) return Error{"the file must be named \"" + fileName + "\""};
  if (file.contentType != contentType)
    return Error{"the file's Content-Type must be " + contentType};
  if (film && !looksLikeQuickTime(file.bytes)) return Error{"the film is no QuickTime file"};
  if (!film && !looksLikeJpeg(file.bytes)) return Error{"the picture is no JPEG file"};
  return std::nullopt;
}

std::optional<Error> takeMetadata(const Form& form, Upload& upload) {
  static constexpr std::string_view start = "metadata[";
  for (const auto& [name, value] : form.fields) {
    if (!name.starts_with(start) || !name.ends_with(']'))
      return Error{"a form field is not of the form metadata[key]"};
    upload.metadata.emplace_back(name.substr(start.size(), name.size() - start.size() - 1), value);
  }
  return std::nullopt;
}

std::optional<Error> takeTypeAndSide(const Form& form, std::string_view side, Upload& upload) {
  std::optional<std::string> type;
  std::optional<std::string> sentSide;
  for (const auto& [name, value] : form.fields) {
    if (name != "type" && name != "side") return Error{"the form has a field that is not known"};
    (name == "type" ? type : sentSide) = value;
  }
  if (!type) return Error{"the form lacks the field \"type\""};
  if (!sentSide) return Error{"the form lacks the field \"side\""};
  if (findDocumentType(*type) == nullptr) return Error{"\"type\" names no known document"};
  if (*sentSide != side) return Error{"\"side\" must be " + std::string(side) + " here"};
  upload.type = std::move(*type);
  return std::nullopt;
}

std::optional<Error> takeFields(const Form& form, const UploadRule& rule, Upload& upload) {
  switch (rule.fields) {
  case UploadFields::metadata:
    return takeMetadata(form, upload);
  case UploadFields::typeAndSide:
    return takeTypeAndSide(form, rule.side, upload);
  case UploadFields::none:
    break;
  }
  if (!form.fields.empty()) return Error{"the form may hold nothing but the file"};
  return std::nullopt;
}

} // namespace

Result<Upload> readUpload(const Request& request, const UploadRule& rule) {
  if (!request.header("content-length")) return Error{"the request has no Content-Length"};
  auto form = readForm(request.header("content-type").value_or(""), request.content());
  if (!form) return form.error();
  Upload upload;
  upload.bytes = form->file.bytes;
  if (auto error = checkFile(form->file, rule)) return *error;
  if (auto error = takeFields(*form, rule, upload)) return *error;
  return upload;
}

} // namespace zuvi::sandbox
