#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include "testing/support/ChildProcess.h"
#include "testing/support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <optional>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <xorg/xf86-input-inputtest-protocol.h>

namespace zuvi::test {

/// A real X server that draws into memory and has a touch screen: X.org with its driver for tests,
/// which passes on the touches that it reads from a socket.
class TouchScreen {
public:
  static constexpr CGSize size{1024, 768}; ///< in points

  TouchScreen() {
    const std::string config = folder_.write("xorg.conf", R"conf(
Section "Device"
  Identifier "card"
  Driver "dummy"
EndSection
Section "Screen"
  Identifier "screen"
  Device "card"
  DefaultDepth 24
  SubSection "Display"
    Depth 24
    Virtual 1024 768
  EndSubSection
EndSection
Section "InputDevice"
  Identifier "fingers"
  Driver "inputtest"
  Option "DeviceType" "Touch"
  Option "SocketPath" ")conf" + folder_.path("fingers") + R"conf("
EndSection
Section "ServerLayout"
  Identifier "all"
  Screen "screen"
  InputDevice "fingers"
EndSection
Section "ServerFlags"
  Option "AutoAddDevices" "false"
EndSection
)conf");
    // The server writes its number into a file as soon as it can serve.
    process_.emplace(std::vector<std::string>{"sh", "-c",
                                              "exec /usr/lib/xorg/Xorg -config " + config +
                                                  " -logfile " + folder_.path("xorg.log") +
                                                  " -noreset -nolisten tcp -novtswitch -sharevts "
                                                  "-displayfd 3 3> " +
                                                  folder_.path("number")},
                     folder_.path("log"));
    const auto number = [this] {
      std::string line;
      std::ifstream file(folder_.path("number"));
      return std::getline(file, line) && !file.eof() ? line : std::string();
    };
    ready_ =
        comesToHold([&] { return !number().empty(); }, [this] { return process_->isRunning(); }) &&
        connect();
    EXPECT_TRUE(ready_) << "this test wants X.org's server with its dummy screen: "
                        << TemporaryFolder::read(folder_.path("log"));
    display_ = ":" + number();
  }
  ~TouchScreen() {
    if (socket_ >= 0) ::close(socket_);
  }
  TouchScreen(const TouchScreen&) = delete;

  bool isThere() const { return ready_; }
  const std::string& display() const { return display_; } ///< for programs' DISPLAY

  void press(CGPoint point) { touch(begin, point); }
  void moveTo(CGPoint point) { touch(update, point); }
  void lift() { touch(end, at_); }

private:
  enum Type : std::uint32_t { begin = 18, update, end }; // as the X Input extension numbers them

  bool connect() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    folder_.path("fingers").copy(address.sun_path, sizeof address.sun_path - 1);
    socket_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
      return false;
    xf86ITEventClientVersion version{};
    version.header = {sizeof version, XF86IT_EVENT_CLIENT_VERSION};
    version.major = XF86IT_PROTOCOL_VERSION_MAJOR;
    version.minor = XF86IT_PROTOCOL_VERSION_MINOR;
    xf86ITResponseServerVersion answer{};
    return ::write(socket_, &version, sizeof version) == sizeof version &&
           ::read(socket_, &answer, sizeof answer) == sizeof answer;
  }
  void touch(Type type, CGPoint point) {
    constexpr double range = 0xffff; // of the driver's axes
    at_ = point;
    xf86ITEventTouch event{};
    event.header = {sizeof event, XF86IT_EVENT_TOUCH};
    event.touch_type = type;
    event.valuators.mask[0] = 3; // across and down
    event.valuators.valuators[0] = point.x / size.width * range;
    event.valuators.valuators[1] = point.y / size.height * range;
    EXPECT_EQ(::write(socket_, &event, sizeof event), ssize_t(sizeof event));
    xf86ITEventWaitForSync wait{{sizeof wait, XF86IT_EVENT_WAIT_FOR_SYNC}};
    EXPECT_EQ(::write(socket_, &wait, sizeof wait), ssize_t(sizeof wait));
    xf86ITResponseSyncFinished done{};
    EXPECT_EQ(::read(socket_, &done, sizeof done), ssize_t(sizeof done));
  }

  TemporaryFolder folder_;
  std::optional<ChildProcess> process_;
  int socket_ = -1;
  bool ready_ = false;
  std::string display_;
  CGPoint at_;
};

} // namespace zuvi::test
