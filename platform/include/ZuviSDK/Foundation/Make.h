#pragma once

#include <memory>
#include <utility>

namespace zuvi {

/// Makes a shared object. A class with a `didMake()` gets it called once the object is owned, which
/// is the first moment at which it may hand out weak references to itself.
template <class T, class... Arguments> std::shared_ptr<T> make(Arguments&&... arguments) {
  auto object = std::make_shared<T>(std::forward<Arguments>(arguments)...);
  if constexpr (requires { object->didMake(); }) object->didMake();
  return object;
}

} // namespace zuvi
