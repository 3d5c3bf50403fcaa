// An upload's body of any shape, behind a line with its Content-Type, as the sandbox reads it.

#include "fuzz/Json.h"
#include "sandbox/core/http/Multipart.h"

using namespace zuvi;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text = fuzz::textOf(bytes, size);
  const auto line = text.find('\n');
  if (line == std::string_view::npos) return 0;
  const std::string_view type = text.substr(0, line), body = text.substr(line + 1);
  const auto form = sandbox::readForm(type, body);
  if (!form) {
    fuzz::expect(!form.error().message.empty());
    return 0;
  }
  const std::string_view file = form->file.bytes;
  fuzz::expect(file.data() >= body.data() &&
               file.data() + file.size() <= body.data() + body.size());
  // What was read, written again, is what came: nothing of it was overlooked.
  const std::string boundary = "--" + std::string(type.substr(type.find("boundary=") + 9));
  const auto named = [&](const std::string& name) {
    return boundary + "\r\nContent-Disposition: form-data; name=\"" + name + '"';
  };
  std::size_t least = 0;
  for (const auto& field : form->fields) {
    const std::string part = named(field.name) + "\r\n\r\n" + field.value + "\r\n";
    fuzz::expect(body.find(part) != std::string_view::npos);
    least += part.size();
  }
  fuzz::expect(body.ends_with(std::string(file) + "\r\n" + boundary + "--\r\n"));
  fuzz::expect(least + file.size() < body.size());
  return 0;
}
