#pragma once

#include "platform/ImageIO/ImageFile.h"
#include "testing/UIKit/Pixels.h"
#include "testing/desktop/PointerWayland.h"
#include "testing/support/ChildProcess.h"
#include "testing/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace zuvi::test {

/// A real desktop without a display: sway, which draws into memory. Its outputs, "HEADLESS-1" and
/// so on, stand side by side; a window without a border fills the one it opens on.
class Compositor {
public:
  explicit Compositor(CGSize output, int outputs = 1) {
    std::string settings = "xwayland disable\ndefault_border none\ndefault_floating_border "
                           "none\nfocus_follows_mouse no\n";
    for (int i = 0; i < outputs; i++)
      settings += "output HEADLESS-" + std::to_string(i + 1) + " resolution " +
                  std::to_string(int(output.width)) + "x" + std::to_string(int(output.height)) +
                  " position " + std::to_string(i * int(output.width)) + " 0\n";
    const std::string config = folder_.write("config", settings), log = folder_.path("log"),
                      ipc = folder_.path("ipc"), home = folder_.path();
    constexpr uid_t nobody = 65534;
    const bool root = getuid() == 0; // whom sway refuses to serve
    if (root && chown(home.c_str(), nobody, nobody) != 0) return;
    // Outputs in memory, drawn without a graphics processor, and no devices of the machine's.
    const std::string command =
        "exec env SWAYSOCK=" + ipc + " XDG_RUNTIME_DIR=" + home +
        " WLR_BACKENDS=headless WLR_RENDERER=pixman WLR_LIBINPUT_NO_DEVICES=1"
        " WLR_HEADLESS_OUTPUTS=" +
        std::to_string(outputs) + " setpriv --pdeathsig KILL " +
        (root ? "--reuid 65534 --regid 65534 --clear-groups " : "") + "sway -c " + config;
    process_.emplace(std::vector<std::string>{"sh", "-c", command}, log);
    ready_ = comesToHold(
        [&] {
          return std::filesystem::exists(folder_.path(display)) && std::filesystem::exists(ipc);
        },
        [this] { return process_->isRunning(); });
    EXPECT_TRUE(ready_) << "this test wants sway: " << TemporaryFolder::read(log);
    pointer_.emplace(folder_.path(display), CGSize{output.width * outputs, output.height});
    EXPECT_TRUE(pointer_->isThere());
  }

  bool isThere() const { return ready_; }
  /// For programs' XDG_RUNTIME_DIR; the browser engine's sandbox leaves out displays of other
  /// folders.
  std::string runtimeFolder() const { return folder_.path(); }
  static constexpr const char* display = "wayland-1"; ///< for their WAYLAND_DISPLAY
  Pointer& pointer() { return *pointer_; }
  /// Runs commands in sway's own words.
  void run(const std::string& commands) const {
    EXPECT_EQ(system("swaymsg -q -s " + folder_.path("ipc") + " '" + commands + "'"), 0)
        << commands;
  }
  /// What the first output shows, in its pixels.
  Pixels picture() const {
    const std::string file = folder_.path("picture.png");
    EXPECT_EQ(system("grim -l 0 -o HEADLESS-1 " + file), 0);
    return Pixels(decodeImage(Data(TemporaryFolder::read(file))));
  }
  /// Types into the window with the focus.
  void type(const std::string& arguments) const {
    EXPECT_EQ(system("wtype " + arguments), 0) << arguments;
  }

private:
  int system(const std::string& command) const {
    return std::system(
        ("XDG_RUNTIME_DIR=" + folder_.path() + " WAYLAND_DISPLAY=wayland-1 " + command).c_str());
  }

  TemporaryFolder folder_;
  std::optional<ChildProcess> process_;
  bool ready_ = false;
  std::optional<Pointer> pointer_;
};

} // namespace zuvi::test
