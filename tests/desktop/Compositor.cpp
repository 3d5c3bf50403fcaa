#include "tests/desktop/Compositor.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zuvi::test {

namespace {

constexpr uid_t nobody = 65534;

bool appears(const std::string& file) {
  for (int i = 0; i < 1000; i++) {
    if (std::filesystem::exists(file)) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return false;
}

} // namespace

Compositor::Compositor(CGSize output, int outputs) {
  std::string settings = "xwayland disable\ndefault_border none\ndefault_floating_border "
                         "none\nfocus_follows_mouse no\n";
  for (int i = 0; i < outputs; i++)
    settings += "output HEADLESS-" + std::to_string(i + 1) + " resolution " +
                std::to_string(int(output.width)) + "x" + std::to_string(int(output.height)) +
                " position " + std::to_string(i * int(output.width)) + " 0\n";
  const std::string config = folder_.write("config", settings), log = folder_.path("log"),
                    ipc = folder_.path("ipc"), home = folder_.path();
  const bool root = getuid() == 0; // whom sway refuses to serve
  if (root && chown(home.c_str(), nobody, nobody) != 0) return;
  process_ = fork();
  if (process_ == 0) {
    setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
    setenv("SWAYSOCK", ipc.c_str(), 1);
    // Outputs in memory, drawn without a graphics processor, and no devices of the machine's.
    setenv("WLR_BACKENDS", "headless", 1);
    setenv("WLR_RENDERER", "pixman", 1);
    setenv("WLR_LIBINPUT_NO_DEVICES", "1", 1);
    setenv("WLR_HEADLESS_OUTPUTS", std::to_string(outputs).c_str(), 1);
    const int file = open(log.c_str(), O_WRONLY | O_CREAT, 0600);
    dup2(file, 1);
    dup2(file, 2);
    if (root)
      execlp("setpriv", "setpriv", "--pdeathsig", "KILL", "--reuid", "65534", "--regid", "65534",
             "--clear-groups", "sway", "-c", config.c_str(), nullptr);
    else
      execlp("setpriv", "setpriv", "--pdeathsig", "KILL", "sway", "-c", config.c_str(), nullptr);
    _exit(127);
  }
  ready_ = appears(folder_.path(display)) && appears(ipc);
  EXPECT_TRUE(ready_) << "this test wants sway: " << TemporaryFolder::read(log);
  pointer_.emplace(folder_.path(display), CGSize{output.width * outputs, output.height});
  EXPECT_TRUE(pointer_->isThere());
}

Compositor::~Compositor() {
  if (process_ <= 0) return;
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
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
