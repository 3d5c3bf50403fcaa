#include "sandbox/core/http/Multipart.h"

#include "sandbox/core/text/Utf8.h"

#include <algorithm>
#include <optional>

namespace zuvi::sandbox {
namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr auto npos = std::string_view::npos;

Error fault(const std::string& what) {
  return {"multipart body: " + what};
}

Result<std::string> readBoundary(std::string_view contentType) {
  static constexpr std::string_view type = "multipart/form-data";
  static constexpr std::string_view key = "boundary=";
  if (!contentType.starts_with(type)) return Error{"Content-Type is not multipart/form-data"};
  auto rest = contentType.substr(type.size());
  while (rest.starts_with(' ') || rest.starts_with(';'))
    rest.remove_prefix(1);
  if (!rest.starts_with(key)) return Error{"Content-Type names no boundary"};
  rest.remove_prefix(key.size());
  const bool plain = std::all_of(rest.begin(), rest.end(), [](unsigned char c) {
    return std::isalnum(c) != 0 || std::string_view("'()+_,-./:=?").find(char(c)) != npos;
  });
  if (rest.empty() || rest.size() > 70 || !plain)
    return Error{"the boundary in Content-Type is not 1 to 70 plain characters"};
  return std::string(rest);
}

struct PartHead {
  std::string name;
  std::optional<std::string> fileName;
  std::string contentType;
};

/// The text of a quoted value that must end right at the closing quote.
std::optional<std::string> quoted(std::string_view& text) {
  if (!text.starts_with('"')) return std::nullopt;
  const auto end = text.find('"', 1);
  if (end == npos) return std::nullopt;
  std::string value(text.substr(1, end - 1));
  text.remove_prefix(end + 1);
  return value;
}

std::optional<Error> readDisposition(std::string_view text, PartHead& head) {
  static constexpr std::string_view start = "form-data; name=";
  static constexpr std::string_view file = "; filename=";
  if (!text.starts_with(start)) return fault("Content-Disposition is not form-data with a name");
  text.remove_prefix(start.size());
  auto name = quoted(text);
  if (!name || name->empty()) return fault("a part's name is empty or not in quotes");
  if (!isUtf8(*name)) return fault("a part's name is not UTF-8");
  head.name = std::move(*name);
  if (text.starts_with(file)) {
    text.remove_prefix(file.size());
    head.fileName = quoted(text);
    if (!head.fileName) return fault("a file name is not in quotes");
  }
  if (!text.empty()) return fault("something follows the values of Content-Disposition");
  return std::nullopt;
}

/// Reads the lines of a part up to and with the empty one.
Result<PartHead> readHead(std::string_view& rest) {
  static constexpr std::string_view disposition = "Content-Disposition: ";
  static constexpr std::string_view type = "Content-Type: ";
  PartHead head;
  while (true) {
    const auto end = rest.find(lineEnd);
    if (end == npos) return fault("a part's header lines do not end with an empty line");
    const auto line = rest.substr(0, end);
    rest.remove_prefix(end + lineEnd.size());
    if (line.empty()) break;
    if (line.find_first_of("\r\n") != npos) return fault("a header line does not end in CR LF");
    if (line.starts_with(disposition) && head.name.empty()) {
      if (auto error = readDisposition(line.substr(disposition.size()), head)) return *error;
    } else if (line.starts_with(type) && line.size() > type.size() && head.contentType.empty()) {
      head.contentType = line.substr(type.size());
    } else {
      return fault("a part has a header line that does not belong there");
    }
  }
  if (head.name.empty()) return fault("a part has no Content-Disposition with a name");
  if (!head.fileName && !head.contentType.empty())
    return fault("a form field has a Content-Type; only the file has one");
  return head;
}

std::optional<Error> addField(Form& form, std::string name, std::string_view value) {
  if (!isUtf8(value)) return fault("the value of a form field is not UTF-8");
  const bool repeated = std::any_of(form.fields.begin(), form.fields.end(),
                                    [&](const FormField& field) { return field.name == name; });
  if (repeated) return fault("a form field comes twice");
  form.fields.push_back({std::move(name), std::string(value)});
  return std::nullopt;
}

} // namespace

Result<Form> readForm(std::string_view contentType, std::string_view body) {
  const auto boundary = readBoundary(contentType);
  if (!boundary) return boundary.error();
  const std::string opening = "--" + *boundary;
  const std::string delimiter = "\r\n" + opening;

  if (!body.starts_with(opening)) return fault("it does not open with the boundary's line");
  std::string_view rest = body.substr(opening.size());
  Form form;
  bool hasFile = false;
  while (true) {
    if (rest.starts_with("--")) break;
    if (!rest.starts_with(lineEnd)) return fault("a boundary's line does not end in CR LF");
    rest.remove_prefix(lineEnd.size());
    if (hasFile) return fault("a part follows the file, which must be the last one");

    auto head = readHead(rest);
    if (!head) return head.error();
    const auto end = rest.find(delimiter);
    if (end == npos) return fault("a part is not followed by CR LF and the boundary");
    const auto content = rest.substr(0, end);
    rest.remove_prefix(end + delimiter.size());
    if (head->fileName) {
      hasFile = true;
      form.file = {std::move(head->name), std::move(*head->fileName), std::move(head->contentType),
                   content};
    } else if (auto error = addField(form, std::move(head->name), content)) {
      return *error;
    }
  }
  if (!hasFile) return fault("it holds no file");
  if (rest != "--\r\n")
    return fault("it does not end right behind the closing boundary's line and its CR LF");
  return form;
}

} // namespace zuvi::sandbox
