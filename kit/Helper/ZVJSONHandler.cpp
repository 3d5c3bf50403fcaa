#include "kit/Helper/ZVJSONHandler.h"

#include "platform/Foundation/Base64.h"
#include "platform/Foundation/DateFormatter.h"
#include "platform/Foundation/JSONSerialization.h"
#include "platform/Foundation/PercentEncoding.h"

namespace zuvi {

Value ZVJSONHandler::makeObjectSerializable(const Value& value) {
  if (value.string() || value.boolean() || value.isNumber()) return value;
  if (const auto* list = value.list()) {
    Value::List reduced;
    for (const Value& element : *list)
      reduced.push_back(makeObjectSerializable(element));
    return reduced;
  }
  if (const auto* dictionary = value.dictionary()) {
    Value::Dictionary reduced;
    for (const auto& [key, element] : *dictionary)
      reduced[key] = makeObjectSerializable(element);
    return reduced;
  }
  if (const Date* date = value.date()) {
    // The text does not depend on the device's language, calendar and time zone.
    const DateFormatter formatter{"yyyy-MM-dd'T'HH:mm:ss.SSS'Z'", "en_US_POSIX", "UTC"};
    return formatter.string(*date);
  }
  if (const URL* url = value.url()) return url->absoluteString();
  return value.description();
}

std::optional<Data> ZVJSONHandler::serializeJSONObject(const Value& value) {
  return JSONSerialization::data(makeObjectSerializable(value));
}

std::optional<std::string> ZVJSONHandler::encodeAPIData(const Value& value) {
  const auto json = serializeJSONObject(value);
  if (!json) return std::nullopt;
  return addingPercentEncoding(base64Encoded(json->view(), Base64Lines::Length64),
                               CharacterSet::urlQueryAllowed());
}

} // namespace zuvi
