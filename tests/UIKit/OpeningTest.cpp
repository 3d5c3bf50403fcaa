// How addresses leave the program, with the desktop's own files.

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Dispatch/MainLoop.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include "testing/support/ScopedEnvironment.h"
#include "testing/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace zuvi::test {
namespace {

/// A desktop with one program, which takes addresses of one scheme and leaves a mark.
class OpeningTest : public testing::Test {
protected:
  OpeningTest() {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // what is asked of a desktop is remembered
    std::filesystem::create_directories(folder.path("applications"));
    folder.write("applications/marker.desktop", "[Desktop Entry]\nType=Application\nName=Marker\n"
                                                "Exec=touch " +
                                                    folder.path("mark") + "\n");
    folder.write("mimeapps.list",
                 "[Default Applications]\nx-scheme-handler/zuvi-test=marker.desktop\n");
  }
  void open(const std::string& scheme, bool wanted) const {
    ::alarm(20); // for who waits without end
    if (UIApplication::shared().openURL(*URL::fromString(scheme + ":here")) != wanted) ::_exit(1);
  }
  [[noreturn]] void waitForMark() const {
    if (std::filesystem::exists(folder.path("mark"))) ::_exit(0);
    DispatchQueue::main().asyncAfter(0.02, [this] { waitForMark(); });
    MainLoop::run();
    ::_exit(2);
  }

  const TemporaryFolder folder;
  const ScopedEnvironment data{"XDG_DATA_HOME", folder.path()};
  const ScopedEnvironment config{"XDG_CONFIG_HOME", folder.path()};
};

TEST_F(OpeningTest, StartsTheProgramOfTheSchemeAndWaitsForNoBus) {
  ScopedEnvironment bus("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
  EXPECT_EXIT((open("nobody-knows", false), open("zuvi-test", true), waitForMark()),
              testing::ExitedWithCode(0), "");

  sockaddr_un address{AF_UNIX, {}}; // where nobody answers
  const std::string path = folder.path("bus");
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  const int silent = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(::bind(silent, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::listen(silent, 8), 0);
  const ScopedEnvironment quiet("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path);
  EXPECT_EXIT((open("zuvi-test", true), ::_exit(0)), testing::ExitedWithCode(0), "");
  ::close(silent);
}

} // namespace
} // namespace zuvi::test
