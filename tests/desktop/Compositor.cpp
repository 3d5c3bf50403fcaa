#include "tests/desktop/Compositor.h"

#include <filesystem>

#include <unistd.h>

namespace zuvi::test {

Compositor::Compositor(CGSize output, int outputs) {
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
  std::vector<std::string> command{"env",
                                   "XDG_RUNTIME_DIR=" + home,
                                   "SWAYSOCK=" + ipc,
                                   "WLR_BACKENDS=headless",
                                   "WLR_RENDERER=pixman",
                                   "WLR_LIBINPUT_NO_DEVICES=1",
                                   "WLR_HEADLESS_OUTPUTS=" + std::to_string(outputs),
                                   "setpriv",
                                   "--pdeathsig",
                                   "KILL"};
  if (root)
    command.insert(command.end(), {"--reuid", "65534", "--regid", "65534", "--clear-groups"});
  command.insert(command.end(), {"sway", "-c", config});
  process_.emplace(std::move(command), log);
  ready_ = comesToHold(
      [&] {
        return std::filesystem::exists(folder_.path(display)) && std::filesystem::exists(ipc);
      },
      [this] { return process_->isRunning(); });
  EXPECT_TRUE(ready_) << "this test wants sway: " << TemporaryFolder::read(log);
  pointer_.emplace(folder_.path(display), CGSize{output.width * outputs, output.height});
  EXPECT_TRUE(pointer_->isThere());
}

int Compositor::system(const std::string& command) const {
  return std::system(
      ("XDG_RUNTIME_DIR=" + folder_.path() + " WAYLAND_DISPLAY=wayland-1 " + command).c_str());
}

void Compositor::run(const std::string& commands) const {
  EXPECT_EQ(system("swaymsg -q -s " + folder_.path("ipc") + " '" + commands + "'"), 0) << commands;
}

Pixels Compositor::picture() const {
  const std::string file = folder_.path("picture.png");
  EXPECT_EQ(system("grim -l 0 -o HEADLESS-1 " + file), 0);
  return Pixels(decodeImage(Data(TemporaryFolder::read(file))));
}

void Compositor::type(const std::string& arguments) const {
  EXPECT_EQ(system("wtype " + arguments), 0) << arguments;
}

} // namespace zuvi::test
