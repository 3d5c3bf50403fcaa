#include "platform/WebKitGtk/ValuesGtk.h"

#include "platform/WebKitGtk/PointerGtk.h"

#include <string>
#include <string_view>

namespace zuvi {

/// A page's text may hold half of a character of two, which is written as an escape and is no text
/// elsewhere. Whole characters are written as they are.
static std::string withWholeCharacters(std::string_view json) {
  std::string text(json);
  for (std::size_t i = text.find('\\'); i < text.size(); i = text.find('\\', i)) {
    if (text.compare(i, 3, "\\ud") == 0 && text[i + 3] >= '8') text.replace(i, 6, "\\ufffd");
    i += 2;
  }
  return text;
}

std::optional<Value> valueOf(JSCValue& value, WebModuleHost& host) {
  if (jsc_value_is_undefined(&value) || jsc_value_is_null(&value)) return Value();
  if (jsc_value_is_boolean(&value)) return Value(bool(jsc_value_to_boolean(&value)));
  JSCContext* context = jsc_value_get_context(&value);
  const TextPointer json(jsc_value_to_json(&value, 0));
  jsc_context_clear_exception(context); // of a circle
  return json ? host.value(withWholeCharacters(json.get())) : std::nullopt;
}

} // namespace zuvi
