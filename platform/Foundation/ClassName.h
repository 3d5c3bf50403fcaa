#pragma once

#include <string>
#include <typeinfo>

namespace zuvi {

/// The plain name of a type of this system, without its namespace.
std::string className(const std::type_info& type);

/// The name of the class that `object` was made as.
template <class T> std::string className(const T& object) {
  return className(typeid(object));
}

} // namespace zuvi
