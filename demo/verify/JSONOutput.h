#pragma once

#include <ZuviSDK/Foundation/Value.h>

#include <cstdio>

namespace zuvi::demo {

/// Standard output for JSON objects alone, one a line. What any library prints there goes to
/// standard error from now on.
class JSONOutput {
public:
  JSONOutput();
  /// Writes the object at once.
  void write(const Value::Dictionary& object) const;

private:
  std::FILE* file_;
};

} // namespace zuvi::demo
