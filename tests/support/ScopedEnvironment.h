#pragma once

#include <optional>
#include <string>

namespace zuvi::test {

/// Sets or unsets an environment variable until the end of the scope.
class ScopedEnvironment {
public:
  ScopedEnvironment(std::string name, const std::optional<std::string>& value);
  ~ScopedEnvironment();
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
  std::string name_;
  std::optional<std::string> former_;
};

} // namespace zuvi::test
