#include <ZuviSDK/Dispatch/MainLoop.h>
#include "demo/core/Toolkit.h"
#include "demo/verify/VerifyProgram.h"
#include "platform/UIKit/OffscreenSurface.h"

#include <cstdio>
#include <cstdlib>

using namespace zuvi;

namespace {

constexpr int wrongUse = 2, failed = 1; // exit status

int refuse(const std::string& problem, int status) {
  std::fprintf(stderr, "zuvi-verify: %s\n", problem.c_str());
  return status;
}

} // namespace

int main(int argc, char** argv) { // NOLINT(bugprone-exception-escape): out of memory ends it
  auto parsed = demo::parseOptions({argv + 1, argv + argc}, demo::Program::Verify);
  if (const auto* problem = std::get_if<std::string>(&parsed)) return refuse(*problem, wrongUse);
  const auto& options = std::get<demo::Options>(parsed);
  if (options.help) {
    std::fputs(demo::usage(demo::Program::Verify).c_str(), stdout);
    return 0;
  }
  if (!options.clientId) return refuse("--client-id or --input names no client id", wrongUse);
  if (options.offscreen && !options.drive)
    return refuse("--offscreen needs --drive, as nobody can tap", wrongUse);
  std::optional<OffscreenSurface> memory;
  if (options.offscreen) {
    memory.emplace(options.screen, options.scale);
    UIScreen::main().setTextScale(options.textScale.value_or(1));
  } else if (!demo::startToolkit("zuvi-verify", options.textScale)) {
    return refuse("there is no display; --offscreen with --drive runs without one", failed);
  }

  MainLoop::attach();
  int exitStatus = failed;
  // Lives as long as the process: its screens may hold on to requests that are under way.
  auto* program = new demo::VerifyProgram(options);
  const std::string problem = program->start([&exitStatus](int status) {
    exitStatus = status;
    MainLoop::stop();
  });
  if (!problem.empty()) return refuse(problem, wrongUse);
  MainLoop::run();
  std::fflush(nullptr);
  std::exit(exitStatus); // which also removes a film under way
}
