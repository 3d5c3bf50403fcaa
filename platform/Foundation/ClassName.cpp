#include "platform/Foundation/ClassName.h"

#include <cstdlib>
#include <memory>

#include <cxxabi.h>

namespace zuvi {

std::string className(const std::type_info& type) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> readable(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
  const std::string name = status == 0 && readable ? readable.get() : type.name();

  // The last separator that stands outside template arguments and "(anonymous namespace)".
  std::size_t start = 0;
  int depth = 0;
  for (std::size_t i = 0; i + 1 < name.size(); ++i) {
    if (name[i] == '<' || name[i] == '(') ++depth;
    if (name[i] == '>' || name[i] == ')') --depth;
    if (depth == 0 && name[i] == ':' && name[i + 1] == ':') start = i + 2;
  }
  return name.substr(start);
}

} // namespace zuvi
