#pragma once

#include <ZuviSDK/Foundation/Data.h>
#include <ZuviSDK/Foundation/Value.h>

#include <optional>
#include <string_view>

namespace zuvi {

/// How much JSON may hold: decoded, a short text can become very large.
struct JSONLimits {
  std::size_t depth = 512;         ///< levels of lists and dictionaries
  std::size_t values = 10'000'000; ///< of all kinds and levels together
};

/// JSON to values and back. Any thread.
class JSONSerialization {
public:
  enum class Fragments { Refuse, Allow };

  using Limits = JSONLimits;
  static constexpr std::size_t usualDepth = JSONLimits().depth;

  /// Absent when `bytes` is no JSON, holds more than the limits or the memory allow, or is a bare
  /// string, number, boolean or null while fragments are refused. Numbers come as the narrowest of
  /// signed, unsigned and double that holds them.
  static std::optional<Value> jsonObject(std::string_view bytes,
                                         Fragments fragments = Fragments::Refuse,
                                         const Limits& limits = Limits());

  /// Whether `data` would accept the value: a list or dictionary at the top, and below it only
  /// null, booleans, finite numbers, strings, lists and dictionaries, at most 512 levels deep.
  static bool isValidJSONObject(const Value& value);

  /// Compact JSON; absent when the value is not valid or a text in it is not UTF-8.
  static std::optional<Data> data(const Value& value);
};

} // namespace zuvi
