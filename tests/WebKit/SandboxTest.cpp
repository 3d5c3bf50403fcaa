#include "platform/WebKit/SandboxTrialGtk.h"
#include "tests/support/ScopedEnvironment.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include <unistd.h>

namespace zuvi::test {
namespace {

TEST(WithoutSandboxTest, NothingOfItIsLeftInTheEnvironment) {
  constexpr const char* variable = "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS";
  const ScopedEnvironment none(variable, std::nullopt), other("ZUVI_OTHER", "here");
  char** const before = environ;
  std::atomic<bool> done = false, lost = false;
  std::thread reader([&] { // as the host's threads may
    while (!done)
      if (!std::getenv("ZUVI_OTHER")) lost = true;
  });
  for (int i = 0; i < 100; i++) {
    const WithoutSandbox without;
    EXPECT_STREQ(std::getenv(variable), "1");
  }
  done = true;
  reader.join();
  EXPECT_FALSE(lost);
  EXPECT_EQ(environ, before);
  EXPECT_EQ(std::getenv(variable), nullptr);
  const ScopedEnvironment word(variable, "0");
  const WithoutSandbox without;
  EXPECT_STREQ(std::getenv(variable), "0") << "the host has said what it wants";
}

} // namespace
} // namespace zuvi::test
