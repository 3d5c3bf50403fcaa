#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace zuvi::test {

/// Sets or unsets an environment variable until the end of the scope.
class ScopedEnvironment {
public:
  ScopedEnvironment(std::string name, const std::optional<std::string>& value)
      : name_(std::move(name)) {
    if (const char* former = std::getenv(name_.c_str())) former_ = former;
    assign(value);
  }
  ~ScopedEnvironment() { assign(former_); }
  ScopedEnvironment(const ScopedEnvironment&) = delete;

private:
  void assign(const std::optional<std::string>& value) {
    value ? ::setenv(name_.c_str(), value->c_str(), 1) : ::unsetenv(name_.c_str());
  }

  std::string name_;
  std::optional<std::string> former_;
};

} // namespace zuvi::test
