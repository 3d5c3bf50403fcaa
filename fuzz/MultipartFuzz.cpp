// The body of an upload, read again by the sandbox's own reader, which forgives nothing.

#include "fuzz/Json.h"
#include "kit/Manager/ZVKYCNetworkManager.h"
#include "sandbox/core/http/Multipart.h"
#include "sandbox/core/text/Utf8.h"

#include <string>

using namespace zuvi;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  // Pieces parted by a zero byte: name, value, name, value ...; what is left is the file.
  std::string_view rest = fuzz::textOf(bytes, size);
  const std::string boundary = "Boundary-9F1C";
  ZVKYCNetworkManager::Parameters fields = Value::Dictionary{};
  const auto next = [&rest]() -> std::optional<std::string> {
    const auto end = rest.find('\0');
    if (end == std::string_view::npos) return std::nullopt;
    std::string piece(rest.substr(0, end));
    rest.remove_prefix(end + 1);
    return piece;
  };
  // Names come from the kit and the host, not from others; they hold no quote and no line end.
  bool plain = rest.find(boundary) == std::string_view::npos;
  while (auto name = next()) {
    const auto value = next();
    if (!value) break;
    plain = plain && !name->empty() && name->find_first_of("\"\r\n") == std::string::npos &&
            sandbox::isUtf8(*name) && sandbox::isUtf8(*value);
    (*fields)[*name] = *value;
  }
  const auto kind =
      size % 2 ? ZVKYCNetworkManager::FileKind::Video : ZVKYCNetworkManager::FileKind::Image;
  const Data file{std::string(rest)};
  const HTTPBody pieces =
      ZVKYCNetworkManager::createBodyWithParameters("picture", file, fields, boundary, kind);
  std::string body;
  for (const Data& piece : pieces)
    body += piece.view();
  const auto form = sandbox::readForm("multipart/form-data; boundary=" + boundary, body);
  if (!plain || file.empty()) return 0;
  fuzz::expect(bool(form));
  fuzz::expect(form->file.bytes == file.view() && form->file.fieldName == "picture");
  fuzz::expect(form->fields.size() == fields->size());
  for (const auto& field : form->fields)
    fuzz::expect(*(*fields)[field.name].string() == field.value);
  return 0;
}
