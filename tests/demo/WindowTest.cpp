// The real program in a real window, clicked with real X events.

#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/JSONSerialization.h"
#include "sandbox/core/Server.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>

namespace zuvi {
namespace {

using Clock = std::chrono::steady_clock;

std::string outputOf(const std::string& command) {
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  std::string output;
  std::array<char, 256> part{};
  while (pipe && std::fgets(part.data(), part.size(), pipe.get()))
    output += part.data();
  return output;
}

class WindowTest : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_NE(std::getenv("DISPLAY"), nullptr) << "this test wants a display, such as Xvfb's";
    sandbox::ServerOptions options;
    options.dataFolder = folder.path() + "/data";
    options.tlsFolder = folder.path() + "/tls";
    auto started = sandbox::Server::start(std::move(options));
    ASSERT_TRUE(started);
    server = std::move(*started);
  }

  void TearDown() override {
    if (program > 0) kill(program, SIGKILL);
    if (program > 0) waitpid(program, nullptr, 0);
  }

  void launch(const std::string& script) {
    std::ofstream(folder.path() + "/a.drive") << script;
    const std::string address = server->address() + "/";
    const std::string tracking = address + "track/", ca = folder.path() + "/tls/ca.pem";
    const std::string drive = folder.path() + "/a.drive", events = folder.path() + "/events";
    program = fork();
    if (program != 0) return;
    execl(ZUVI_DEMO_PROGRAM, "zuvi-demo", "--client-id", "demo", "--server", address.c_str(),
          "--tracking", tracking.c_str(), "--ca", ca.c_str(), "--drive", drive.c_str(), "--events",
          events.c_str(), "--front-camera", "simulated", "--back-camera", "simulated", nullptr);
    _exit(127);
  }

  /// Waits for a dump of that name, then clicks the middle of the view of that outlet or action.
  void clickWhenDumped(const std::string& dump, const std::string& view) {
    const std::string path = folder.path() + "/" + dump;
    const auto deadline = Clock::now() + std::chrono::seconds(30);
    std::optional<Data> bytes;
    while (!(bytes = FileManager::contents(path)) && Clock::now() < deadline)
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ASSERT_TRUE(bytes) << dump << " never came";
    const auto tree = JSONSerialization::jsonObject(bytes->view());
    ASSERT_TRUE(tree);
    const auto windows = *tree->dictionary()->at("windows").listOfDictionaries();
    const auto frame = find(windows.at(0), view);
    ASSERT_EQ(frame.size(), 4u) << view;
    // The screen lies below the window's title bar.
    std::istringstream geometry(
        outputOf("xdotool search --name 'Harbour Rentals' getwindowgeometry --shell"));
    double height = 0;
    std::string window;
    for (std::string line; std::getline(geometry, line);) {
      if (line.rfind("HEIGHT=", 0) == 0) height = std::stod(line.substr(7));
      if (line.rfind("WINDOW=", 0) == 0) window = line.substr(7);
    }
    ASSERT_FALSE(window.empty());
    const double bar = height - frameOf(windows.at(0))[3];
    const auto x = std::to_string(static_cast<int>(frame[0] + frame[2] / 2));
    const auto y = std::to_string(static_cast<int>(bar + frame[1] + frame[3] / 2));
    outputOf("xdotool mousemove --window " + window + " " + x + " " + y + " click 1");
  }

  static std::vector<double> frameOf(const Value::Dictionary& view) {
    std::vector<double> numbers;
    for (const Value& number : *view.at("frame").list())
      numbers.push_back(*number.number());
    return numbers;
  }

  static std::vector<double> find(const Value::Dictionary& view, const std::string& name) {
    if (stringValue(view, "outlet") == name || stringValue(view, "action") == name)
      return frameOf(view);
    const auto children = *view.at("children").listOfDictionaries();
    for (const auto& child : children)
      if (auto frame = find(child, name); !frame.empty()) return frame;
    return {};
  }

  int exitCode() {
    int status = -1;
    waitpid(program, &status, 0);
    program = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  const test::TemporaryFolder folder;
  std::unique_ptr<sandbox::Server> server;
  pid_t program = -1;
};

TEST_F(WindowTest, ClicksReachTheFlow) {
  const std::string at = folder.path() + "/";
  launch("wait HostViewController\nsleep 0.5\ndump " + at + "host\n" +
         "wait ZVMainViewController 20\ndump " + at + "start\n" +
         "wait ZVLiveCameraViewController 20\ndump " + at + "recorder\n" +
         "wait ZVCancelAlertViewController 20\ndump " + at + "alert\n" +
         "outcome 20\nexpect outcomeLabel.text \"Verification cancelled\"\n");
  clickWhenDumped("host", "launchButton");
  clickWhenDumped("start", "bottomButton");
  clickWhenDumped("recorder", "closeButtonTap");
  clickWhenDumped("alert", "cancelButton");
  EXPECT_EQ(exitCode(), 0);
  const std::string events = FileManager::contents(at + "events")->string();
  EXPECT_NE(events.find("\"zvKYCLoginCancelled\""), std::string::npos) << events;
}

} // namespace
} // namespace zuvi
