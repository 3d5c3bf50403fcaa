#pragma once

#include <ZuviSDK/Foundation/Value.h>
#include "platform/Foundation/JSONSerialization.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace zuvi::fuzz {

inline std::string_view textOf(const std::uint8_t* bytes, std::size_t size) {
  return {reinterpret_cast<const char*>(bytes), size};
}

/// As the kit decodes an answer of the back end: absent when it is no JSON object.
inline std::optional<Value::Dictionary> objectOf(const std::uint8_t* bytes, std::size_t size) {
  const auto value =
      JSONSerialization::jsonObject(textOf(bytes, size), JSONSerialization::Fragments::Allow);
  const auto* object = value ? value->dictionary() : nullptr;
  return object ? std::optional(*object) : std::nullopt;
}

/// Ends the program, which is how the fuzzer learns of a fault that no sanitizer sees.
inline void expect(bool holds) {
  if (!holds) __builtin_trap();
}

} // namespace zuvi::fuzz
