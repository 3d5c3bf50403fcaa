#pragma once

#include <ZuviSDK/Foundation/Value.h>

#include <variant>

namespace zuvi {

/// What a value holds. It stands apart from Value.h because a variant of so many types takes each
/// of a host's sources a quarter of a second to compile.
struct Value::Storage {
  std::variant<std::monostate, bool, std::int64_t, std::uint64_t, float, double, std::string, List,
               Dictionary, Date, URL, std::shared_ptr<const DescribedObject>>
      content;
};

} // namespace zuvi
