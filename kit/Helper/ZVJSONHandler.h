#pragma once

#include <ZuviSDK/Foundation/Data.h>
#include <ZuviSDK/Foundation/Value.h>

#include <optional>
#include <string>

namespace zuvi {

/// Turns values into text for an address.
class ZVJSONHandler {
public:
  /// JSON, in Base64 with a line break after every 64 characters, percent-encoded for a query.
  /// Absent for other values than lists and dictionaries, and where a number is not finite.
  static std::optional<std::string> encodeAPIData(const Value& value);

private:
  static std::optional<Data> serializeJSONObject(const Value& value);
  /// Values that JSON does not have become text: dates, addresses, descriptions.
  static Value makeObjectSerializable(const Value& value);
};

} // namespace zuvi
