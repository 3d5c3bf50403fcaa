// The real program as a screen reader and a keyboard know it: nothing here looks at the screen or
// moves the pointer.

#include "sandbox/core/Server.h"
#include "tests/accessibility/AccessibilityBusGio.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <thread>

namespace zuvi::test {
namespace {

using Clock = std::chrono::steady_clock;

class KeysTest : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_NE(std::getenv("DISPLAY"), nullptr) << "this test wants a display, such as Xvfb's";
    ASSERT_TRUE(bus.isThere()) << "this test wants at-spi2-core";
    sandbox::ServerOptions options;
    options.dataFolder = folder.path() + "/data";
    auto started = sandbox::Server::start(std::move(options));
    ASSERT_TRUE(started);
    server = std::move(*started);
    const std::string address = server->address() + "/", tracking = address + "track/";
    program = fork();
    if (program == 0) {
      unsetenv("GTK_A11Y");
      setenv("AT_SPI_BUS_ADDRESS", bus.address.c_str(), 1);
      execl(ZUVI_DEMO_PROGRAM, "zuvi-demo", "--client-id", "demo", "--server", address.c_str(),
            "--tracking", tracking.c_str(), "--front-camera", "simulated", "--back-camera",
            "simulated", nullptr);
      _exit(127);
    }
    ASSERT_EQ(std::system("xdotool search --sync --name 'Harbour Rentals' windowfocus"), 0);
    ASSERT_TRUE(find("push button", "Login")) << seen();
  }

  void TearDown() override {
    if (program <= 0) return;
    kill(program, SIGKILL);
    waitpid(program, nullptr, 0);
  }

  /// Looks until there is such an element, with the focus if that is asked for.
  std::optional<Accessible> find(const std::string& role, const std::string& name,
                                 bool focused = false) {
    const auto deadline = Clock::now() + std::chrono::seconds(20);
    do {
      tree = bus.tree();
      for (const Accessible& object : tree)
        if (object.role == role && object.name == name && (!focused || object.focused))
          return object;
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    } while (Clock::now() < deadline);
    return std::nullopt;
  }
  bool focuses(const std::string& button) { return find("push button", button, true).has_value(); }
  /// The key moves the focus there.
  bool leads(const std::string& key, const std::string& button) {
    press(key);
    return focuses(button);
  }
  bool shows(const std::string& role, const std::string& name) {
    return std::any_of(tree.begin(), tree.end(), [&](const Accessible& object) {
      return object.role == role && object.name == name;
    });
  }
  std::string seen() const {
    std::string text;
    for (const Accessible& object : tree)
      text += std::string(static_cast<std::size_t>(object.depth), ' ') + object.role + " \"" +
              object.name + (object.focused ? "\" focused\n" : "\"\n");
    return text;
  }
  static void press(const std::string& keys) {
    EXPECT_EQ(std::system(("xdotool key " + keys).c_str()), 0);
  }
  double number(const Accessible& object, const char* name) {
    const auto value = bus.property(object, "org.a11y.atspi.Value", name);
    return value ? g_variant_get_double(value.get()) : -1;
  }
  /// Whether these texts are announced, in this order.
  bool heard(const std::vector<std::string>& texts) {
    const auto deadline = Clock::now() + std::chrono::seconds(20);
    do {
      while (g_main_context_iteration(nullptr, FALSE)) {
      }
      const auto& all = bus.descriptions;
      auto at = all.begin();
      for (const std::string& text : texts)
        // Several that come at once are told in one.
        if ((at = std::find_if(at, all.end(), [&](const std::string& told) {
               return told.ends_with(text);
             })) == all.end())
          break;
      if (at != all.end()) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    } while (Clock::now() < deadline);
    return false;
  }

  const TemporaryFolder folder;
  AccessibilityBus bus;
  std::unique_ptr<sandbox::Server> server;
  pid_t program = -1;
  std::vector<Accessible> tree;
};

TEST_F(KeysTest, WholeRunIsReadAndDrivenWithoutAPointer) {
  ASSERT_TRUE(leads("Tab", "Login")) << seen();
  ASSERT_TRUE(leads("Return", "Start")) << seen();
  EXPECT_TRUE(shows("heading", "Verify your identity.") && shows("push button", "Support") &&
              shows("push button", "Close") && shows("label", "Record a short film of your face"))
      << seen();
  EXPECT_FALSE(shows("push button", "Login") || shows("push button", "Back")) << seen();
  const auto step = find("progress bar", "Step 1 of 4");
  ASSERT_TRUE(step);
  EXPECT_EQ(number(*step, "CurrentValue"), 1);
  EXPECT_EQ(number(*step, "MaximumValue"), 4);

  ASSERT_TRUE(leads("Return", "Record")) << seen();
  EXPECT_TRUE(shows("image", "Keep your face in the oval. Turn your head to one side, then to the "
                             "other, and smile."))
      << seen();
  ASSERT_TRUE(leads("Escape", "Start")) << seen();
  ASSERT_TRUE(leads("Return", "Record")) << seen();
  press("space");
  EXPECT_TRUE(heard({"5", "4", "3", "2", "1", "The recording has begun. It takes 7 seconds."}));
  ASSERT_TRUE(focuses("Continue")) << seen();
  ASSERT_TRUE(leads("shift+Tab", "Retake")) << seen();
  ASSERT_TRUE(leads("Tab", "Continue")) << seen();

  ASSERT_TRUE(leads("Return", "Take picture")) << seen();
  ASSERT_TRUE(find("label", "Front side")) << seen();
  press("Return");
  ASSERT_TRUE(find("label", "Back side")) << seen();
  ASSERT_TRUE(focuses("Take picture")) << seen();
  press("Return");

  ASSERT_TRUE(focuses("Passport")) << seen();
  const auto row = find("row", "Driving licence, 2 sides");
  ASSERT_TRUE(row && shows("list", "Choose a document.")) << seen();
  ASSERT_TRUE(leads("Down", "Driving licence, 2 sides")) << seen();
  ASSERT_TRUE(leads("Up", "Passport")) << seen();
  ASSERT_TRUE(leads("shift+Tab", "Close")) << seen();
  ASSERT_TRUE(leads("Return", "Continue")) << seen();
  EXPECT_TRUE(shows("dialog", "Do you want to leave? What you have recorded will be lost."));
  EXPECT_FALSE(shows("list", "Choose a document.")) << seen();
  ASSERT_TRUE(leads("Tab", "Leave")) << seen();
  ASSERT_TRUE(leads("Tab", "Continue")) << seen();
  ASSERT_TRUE(leads("Escape", "Close")) << seen();
  press("Tab");
  press("Return");

  ASSERT_TRUE(focuses("Take picture")) << seen();
  ASSERT_TRUE(leads("Return", "Done")) << seen();
  EXPECT_TRUE(heard({"All done, thank you."}));
  ASSERT_TRUE(leads("Return", "Login")) << seen();

  const auto login = find("push button", "Login");
  ASSERT_TRUE(
      bus.call(*login, "org.a11y.atspi.Action", "DoAction", g_variant_new("(i)", 0), "(b)"));
  EXPECT_TRUE(focuses("Start")) << seen();
}

} // namespace
} // namespace zuvi::test
