#include "tests/support/ScopedEnvironment.h"

#include <cstdlib>
#include <utility>

namespace zuvi::test {

namespace {

void assign(const std::string& name, const std::optional<std::string>& value) {
  if (value)
    ::setenv(name.c_str(), value->c_str(), 1);
  else
    ::unsetenv(name.c_str());
}

} // namespace

ScopedEnvironment::ScopedEnvironment(std::string name, const std::optional<std::string>& value)
    : name_(std::move(name)) {
  if (const char* former = std::getenv(name_.c_str())) former_ = former;
  assign(name_, value);
}

ScopedEnvironment::~ScopedEnvironment() {
  assign(name_, former_);
}

} // namespace zuvi::test
