#include "platform/WebKit/BorrowedEnvironment.h"
#include "testing/WebKit/WebFixtureGtk.h"
#include "testing/support/ScopedEnvironment.h"
#include "testing/support/TemporaryFolder.h"

#include <atomic>
#include <thread>

#include <unistd.h>

namespace zuvi::test {
namespace {

using SandboxTest = WebTest;

TEST_F(SandboxTest, IsAnsweredForAndDemanded) {
  serve("/", "here");
  const TemporaryFolder folder;
  folder.write("bwrap", "#!/bin/sh\nexit 1\n"); // as in many containers
  std::filesystem::permissions(folder.path("bwrap"), std::filesystem::perms::owner_all);
  const ScopedEnvironment path("PATH", folder.path() + ":" + std::getenv("PATH"));
  EXPECT_EQ(WKWebView::isSandboxed(), std::nullopt) << "nobody has tried";
  WKWebView::setRequiresSandbox(true);
  const auto view = makeWebView();
  load(*view, server(http, "/"));
  EXPECT_TRUE(waitFor([&] { return listener->has("provisional failure"); }));
  EXPECT_EQ(WKWebView::isSandboxed(), false);
  EXPECT_NE(WKWebView::problem().find("sandbox"), std::string::npos);
  EXPECT_EQ(requestsFor("/"), 0);
  WKWebView::setRequiresSandbox(false);
  EXPECT_TRUE(show(*view, "/"));
}

TEST(BorrowedEnvironmentTest, NothingOfItIsLeft) {
  const ScopedEnvironment none("ZUVI_WISH", std::nullopt), there("ZUVI_OTHER", "here");
  char** const before = environ;
  std::atomic<bool> done = false, lost = false;
  std::thread reader([&] { // as the host's threads may
    while (!done)
      if (!std::getenv("ZUVI_OTHER")) lost = true;
  });
  for (int i = 0; i < 100; i++) {
    const BorrowedEnvironment borrowed({"ZUVI_OTHER=ordered"}, {"ZUVI_WISH=1", "ZUVI_OTHER=wish"});
    EXPECT_STREQ(std::getenv("ZUVI_WISH"), "1");
    EXPECT_STREQ(std::getenv("ZUVI_OTHER"), "ordered");
  }
  done = true;
  reader.join();
  EXPECT_FALSE(lost);
  EXPECT_EQ(environ, before);
  {
    const BorrowedEnvironment borrowed({}, {"ZUVI_WISH=1", "ZUVI_OTHER=wish"});
    EXPECT_STREQ(std::getenv("ZUVI_OTHER"), "here");
    setenv("ZUVI_MEANWHILE", "set", 1); // copies the list with all that is in it
  }
  EXPECT_EQ(std::getenv("ZUVI_WISH"), nullptr);
  EXPECT_STREQ(std::getenv("ZUVI_OTHER"), "here");
  EXPECT_STREQ(std::getenv("ZUVI_MEANWHILE"), "set");
  unsetenv("ZUVI_MEANWHILE");
}

} // namespace
} // namespace zuvi::test
