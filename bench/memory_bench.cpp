// Memory of a host after one whole verification and after fifty, with the default allocator. Drawn
// cameras, real pipelines, the sandbox in a process of its own, a clock that runs eight times as
// fast.   memory_bench [RUNS [SPEED]]

#include <ZuviSDK/UIKit/UIWindow.h>
#include <ZuviSDK/ZVEndpoints.h>
#include "bench/Measure.h"
#include "demo/core/DemoCameras.h"
#include "demo/core/Driver.h"
#include "demo/core/HostViewController.h"
#include "platform/Dispatch/Clock.h"
#include "platform/UIKit/OffscreenSurface.h"
#include "sandbox/core/Server.h"

#include <malloc.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>

using namespace zuvi;

namespace {

constexpr const char* script = R"(
wait HostViewController 30
tap launchButton
wait ZVMainViewController 30
sleep 1
tap bottomButton
wait ZVLiveCameraViewController 30
sleep 4
tap recordButton
wait ZVLivenessVerifyViewController 60
tap bottomButton
wait ZVKYCCameraViewController 120
sleep 4
tap bottomButton
wait ZVVerifiedViewController 120
sleep 1
tap bottomButton
outcome 30
wait HostViewController 30
sleep 24
)";

class QuickClock final : public Clock {
public:
  explicit QuickClock(double speed) : speed_(speed) {}
  TimeInterval now() const override { return start_ + (bench::wallSeconds() - start_) * speed_; }

private:
  const double speed_, start_ = bench::wallSeconds();
};

/// The address of a sandbox in a child process, which ends with this one.
std::string startSandbox(const std::string& folder) {
  int ends[2];
  if (pipe(ends) != 0) return {};
  if (fork() == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    sandbox::ServerOptions options;
    options.dataFolder = folder;
    const auto started = sandbox::Server::start(std::move(options));
    const std::string address = started ? (*started)->address() + "/" : "";
    [[maybe_unused]] const auto told = write(ends[1], address.data(), address.size());
    close(ends[1]);
    for (;;)
      pause();
  }
  close(ends[1]);
  char text[256];
  const auto size = read(ends[0], text, sizeof text);
  return size > 0 ? std::string(text, std::size_t(size)) : "";
}

/// MiB that the process has in memory.
double resident() {
  std::ifstream file("/proc/self/statm");
  double all = 0, pages = 0;
  file >> all >> pages;
  return pages * double(sysconf(_SC_PAGESIZE)) / 1048576;
}

int arenas() {
  char* text = nullptr;
  std::size_t size = 0;
  std::FILE* stream = open_memstream(&text, &size);
  malloc_info(0, stream);
  std::fclose(stream);
  int count = 0;
  for (const char* at = text; (at = std::strstr(at, "<heap nr=")); at++)
    count++;
  std::free(text);
  return count;
}

/// Drives one verification; the failure, empty for none.
std::string verify(OffscreenSurface& surface, double speed, const int& outcomes) {
  auto& queue = DispatchQueue::main();
  std::optional<std::string> result;
  demo::Driver::Hooks hooks;
  hooks.outcomes = [&outcomes] { return outcomes; };
  hooks.done = [&result](const std::string& failure) { result = failure; };
  demo::Driver driver("memory_bench",
                      std::get<std::vector<demo::DriveCommand>>(demo::parseDriveScript(script)),
                      std::move(hooks));
  driver.start();
  while (!result) {
    queue.runDue();
    surface.drawFrame();
    queue.waitForWork(std::min((queue.nextDeadline() - queue.now()) / speed, 0.1));
  }
  return *result;
}

} // namespace

int main(int argc, char** argv) {
  const int runs = argc > 1 ? std::atoi(argv[1]) : 50;
  const double speed = argc > 2 ? std::atof(argv[2]) : 8;
  char name[] = "/tmp/memory_bench-XXXXXX";
  if (runs < 2 || speed <= 0 || !mkdtemp(name)) {
    std::fprintf(stderr, "memory_bench [RUNS [SPEED]]: at least two runs\n");
    return 2;
  }
  const std::string folder = name;
  setenv("XDG_DATA_HOME", (folder + "/share").c_str(), 1); // before there are threads
  setenv("XDG_CONFIG_HOME", (folder + "/config").c_str(), 1);
  const std::string address = startSandbox(folder + "/sandbox");
  if (address.empty()) {
    std::fprintf(stderr, "memory_bench: the sandbox does not start\n");
    return 1;
  }

  auto& queue = DispatchQueue::main();
  queue.setClock(std::make_shared<QuickClock>(speed));
  OffscreenSurface surface({375, 812}, 2);
  ZVEndpoints::serverURL() = address;
  ZVEndpoints::trackingURL() = address + "track/";
  ZVEndpoints::chatTemplateURL() = address + "app/mobile/urls.json";
  demo::Options options;
  options.cameras = demo::Cameras::Drawn;
  demo::installCameras(options);
  const auto host = make<demo::HostViewController>();
  int outcomes = 0;
  host->onOutcome = [&outcomes](const auto&, const auto&) { outcomes++; };
  ZVKYC::instance().delegate = host;
  ZVKYC::registerWithClientId("only-required");
  const auto window = make<UIWindow>();
  window->setRootViewController(host);
  window->makeKeyAndVisible();

  std::string failure;
  double first = 0;
  for (int run = 1; run <= runs && failure.empty(); run++) {
    failure = verify(surface, speed, outcomes);
    const double now = resident();
    if (run == 1) first = now;
    if (run == 1 || run == runs || run % 10 == 0)
      std::printf("after %3d verifications  %6.1f MiB  ratio %.3f  (%5.1f MiB of the heap in use, "
                  "%d arenas)\n",
                  run, now, now / first,
                  double(mallinfo2().uordblks + mallinfo2().hblkhd) / 1048576, arenas());
    std::fflush(stdout);
  }
  std::error_code left;
  std::filesystem::remove_all(folder, left);
  if (!failure.empty()) std::fprintf(stderr, "%s\n", failure.c_str());
  std::_Exit(failure.empty() ? 0 : 1); // the screens live as long as the process
}
