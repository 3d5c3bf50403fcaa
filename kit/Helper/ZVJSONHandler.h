#pragma once

#include <ZuviSDK/Foundation/Data.h>
#include <ZuviSDK/Foundation/Value.h>

#include <optional>
#include <string>

namespace zuvi {

/// Turns values into text that can stand in an address.
class ZVJSONHandler {
public:
  /// JSON, in Base64 with a line break after every 64 characters, percent-encoded for a query.
  /// Absent for what is no list or dictionary, or holds a number that is not finite.
  static std::optional<std::string> encodeAPIData(const Value& value);

private:
  static std::optional<Data> serializeJSONObject(const Value& value);
  /// What JSON can't hold becomes text: dates, addresses, descriptions.
  static Value makeObjectSerializable(const Value& value);
};

} // namespace zuvi
