// Whole verifications one after the other in one process: what it holds after each, with the
// default allocator. Drawn cameras at their own pace, real pipelines and encoders, real requests to
// a sandbox in a process of its own; only the clock of the screens runs so many times as fast.
//   soak [ROUNDS [SPEED]]

#include <ZuviSDK/UIKit/UIWindow.h>
#include <ZuviSDK/ZVEndpoints.h>
#include "bench/Measure.h"
#include "demo/core/DemoCameras.h"
#include "demo/core/Driver.h"
#include "demo/core/HostViewController.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "platform/Dispatch/Clock.h"
#include "platform/Foundation/ClassName.h"
#include "platform/QuartzCore/LiveLayers.h"
#include "platform/UIKit/OffscreenSurface.h"
#include "sandbox/core/Server.h"
#include "testing/UIKit/ViewTree.h"

#include <malloc.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>

using namespace zuvi;

namespace {

/// What the person does: up to the film, and all after it.
constexpr const char* untilTheFilm = R"(
wait HostViewController 30
tap launchButton
wait ZVMainViewController 30
sleep 1
tap closeButtonTap
wait ZVCancelAlertViewController 30
sleep 1
tap continueButton
wait ZVMainViewController 30
sleep 1
tap bottomButton
wait ZVLiveCameraViewController 30
sleep 4
)";
constexpr const char* afterTheFilm = R"(
tap bottomButton
wait ZVKYCCameraViewController 10000
sleep 4
tap bottomButton
wait ZVVerifiedViewController 10000
sleep 1
tap bottomButton
outcome 30
wait HostViewController 30
)";

/// Real: what a person would see go on between two verifications.
constexpr double restSeconds = 1;
constexpr double longestSeconds = 600; ///< real: nothing of a round takes that long
constexpr int mostTakes = 5;

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

/// Where this program tells; what the kit prints in each round is not wanted.
std::FILE* figures = stdout;

/// What the process holds.
struct Holdings {
  double resident = 0, heap = 0; ///< MiB in memory, and of the heap in use
  double descriptors = 0, threads = 0, layers = 0;
};

Holdings holdings() {
  Holdings held;
  std::ifstream file("/proc/self/statm");
  double all = 0, pages = 0;
  file >> all >> pages;
  held.resident = pages * double(sysconf(_SC_PAGESIZE)) / 1048576;
  const auto heap = mallinfo2();
  held.heap = double(heap.uordblks + heap.hblkhd) / 1048576;
  const auto entries = [](const char* folder) {
    return double(std::distance(std::filesystem::directory_iterator(folder), {}));
  };
  held.descriptors = entries("/proc/self/fd") - 1; // without the one that lists them
  held.threads = entries("/proc/self/task");
  held.layers = double(liveLayers());
  return held;
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

/// Whether the line is flat: the median of the last quarter of the rounds beside that of the
/// second, when everything that is kept for good was made. Of what is counted nothing may come on
/// top, of the heap a KiB a round, of the memory, which also the allocator keeps, a twentieth.
bool isFlat(const std::vector<Holdings>& rounds) {
  const struct {
    const char* name;
    double Holdings::*what;
    double factor, perRound;
  } lines[] = {{"MiB resident", &Holdings::resident, 1.05, 0},
               {"MiB of the heap in use", &Holdings::heap, 1.02, 1.0 / 1024},
               {"descriptors", &Holdings::descriptors, 1, 0},
               {"threads", &Holdings::threads, 1, 0},
               {"layers", &Holdings::layers, 1, 0}};
  const std::size_t quarter = rounds.size() / 4;
  bool flat = true;
  for (const auto& line : lines) {
    const auto median = [&](std::size_t from) {
      std::vector<double> values;
      for (std::size_t i = from; i < from + quarter; i++)
        values.push_back(rounds[i].*line.what);
      return bench::figuresOf(values).median;
    };
    const double early = median(quarter), late = median(rounds.size() - quarter);
    const double allowed = early * line.factor + line.perRound * double(quarter * 2);
    std::fprintf(figures, "%-24s %9.2f in the second quarter, %9.2f in the last: %s\n", line.name,
                 early, late, late <= allowed ? "flat" : "IT GROWS");
    flat = flat && late <= allowed;
  }
  return flat;
}

/// Runs the program until `done`; false when that takes longer than any machine needs.
bool runUntil(OffscreenSurface& surface, double speed, const std::function<bool()>& done) {
  auto& queue = DispatchQueue::main();
  const double end = bench::wallSeconds() + longestSeconds;
  while (!done()) {
    if (bench::wallSeconds() > end) return false;
    queue.runDue();
    surface.drawFrame();
    queue.waitForWork(std::clamp((queue.nextDeadline() - queue.now()) / speed, 0.0, 0.1));
  }
  return true;
}

/// Drives one part; the failure, empty for none.
std::string drive(const char* script, OffscreenSurface& surface, double speed,
                  const int& outcomes) {
  std::optional<std::string> result;
  demo::Driver::Hooks hooks;
  hooks.outcomes = [&outcomes] { return outcomes; };
  hooks.done = [&result](const std::string& failure) { result = failure; };
  demo::Driver driver("soak",
                      std::get<std::vector<demo::DriveCommand>>(demo::parseDriveScript(script)),
                      std::move(hooks));
  driver.start();
  if (!runUntil(surface, speed, [&] { return result.has_value(); })) return "soak: it stands still";
  return *result;
}

bool isShown(const char* name) {
  const auto view = findView(name, false);
  return view && isShown(*view);
}

/// Takes the film until the review shows it, however long its end takes; again where a busy machine
/// gave no picture for it, which brings the instruction back.
std::string film(OffscreenSurface& surface, double speed, const int& outcomes, int& retakes) {
  for (int take = 0; take < mostTakes; take++, retakes++) {
    const std::string failure = drive("tap recordButton\n", surface, speed, outcomes);
    if (!failure.empty()) return failure;
    const auto reviewed = [] {
      return className(*ZVKYCHelper::instance().rootVC->mainNC()->topViewController()) ==
             "ZVLivenessVerifyViewController";
    };
    const bool filmed = runUntil(surface, speed, [] { return !isShown("gifImageView"); });
    if (!filmed || !runUntil(surface, speed, [&] { return reviewed() || isShown("gifImageView"); }))
      return "soak: the film does not end";
    if (reviewed()) return drive("sleep 1\n", surface, speed, outcomes);
  }
  return "soak: the camera gives no picture for a film";
}

/// One verification; the failure, empty for none.
std::string verify(OffscreenSurface& surface, double speed, const int& outcomes, int& retakes) {
  std::string failure = drive(untilTheFilm, surface, speed, outcomes);
  if (failure.empty()) failure = film(surface, speed, outcomes, retakes);
  return failure.empty() ? drive(afterTheFilm, surface, speed, outcomes) : failure;
}

} // namespace

int main(int argc, char** argv) {
  const int count = argc > 1 ? std::atoi(argv[1]) : 50;
  const double speed = argc > 2 ? std::atof(argv[2]) : 8;
  char name[] = "/tmp/soak-XXXXXX";
  if (count < 8 || !(speed >= 1 && speed <= 100) || !mkdtemp(name)) {
    std::fprintf(stderr, "soak [ROUNDS [SPEED]]: at least 8 rounds, a speed from 1 to 100\n");
    return 2;
  }
  const std::string folder = name;
  figures = fdopen(dup(STDOUT_FILENO), "w");
  if (!figures || !std::freopen("/dev/null", "w", stdout)) return 1;
  std::setvbuf(figures, nullptr, _IOLBF, 0);
  setenv("XDG_DATA_HOME", (folder + "/share").c_str(), 1); // before there are threads
  setenv("XDG_CONFIG_HOME", (folder + "/config").c_str(), 1);
  const std::string address = startSandbox(folder + "/sandbox");
  if (address.empty()) {
    std::fprintf(stderr, "soak: the sandbox does not start\n");
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
  std::vector<Holdings> rounds;
  int retakes = 0;
  for (int round = 1; round <= count && failure.empty(); round++) {
    failure = verify(surface, speed, outcomes, retakes);
    // The cameras go when nobody has used them for a while, and hand their memory back.
    const double end = bench::wallSeconds() + restSeconds;
    runUntil(surface, speed, [end] { return bench::wallSeconds() >= end; });
    const Holdings now = rounds.emplace_back(holdings());
    if (round > 2 && round < count && round % std::max(count / 10, 1) != 0) continue;
    std::fprintf(figures,
                 "after %4d  %6.1f MiB  ratio %.3f  (%5.1f MiB of the heap in use, %d arenas)  "
                 "%3.0f descriptors  %3.0f threads  %4.0f layers\n",
                 round, now.resident, now.resident / rounds.front().resident, now.heap, arenas(),
                 now.descriptors, now.threads, now.layers);
  }
  std::fprintf(figures, "%zu rounds, %d films taken again\n", rounds.size(), retakes);
  if (failure.empty() && !isFlat(rounds)) failure = "soak: a line is not flat";
  malloc_trim(0);
  std::fprintf(figures, "%.1f MiB resident once the allocator gave back what is free\n",
               holdings().resident);
  std::error_code left;
  std::filesystem::remove_all(folder, left);
  if (!failure.empty()) std::fprintf(stderr, "%s\n", failure.c_str());
  std::_Exit(failure.empty() ? 0 : 1); // the screens live as long as the process
}
