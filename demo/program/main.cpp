#include <ZuviSDK/Dispatch/MainLoop.h>
#include "demo/core/Demo.h"
#include "demo/program/DemoWindow.h"
#include "platform/UIKit/OffscreenSurface.h"

#include <cstdio>
#include <cstdlib>

using namespace zuvi;

int main(int argc, char** argv) { // NOLINT(bugprone-exception-escape): out of memory ends it
  auto parsed = demo::parseOptions({argv + 1, argv + argc});
  if (const auto* problem = std::get_if<std::string>(&parsed)) {
    std::fprintf(stderr, "zuvi-demo: %s\n", problem->c_str());
    return 2;
  }
  const auto& options = std::get<demo::Options>(parsed);
  if (options.help) {
    std::fputs(demo::usage().c_str(), stdout);
    return 0;
  }
  std::optional<OffscreenSurface> memory;
  if (options.offscreen) {
    memory.emplace(options.screen, options.scale);
    UIScreen::main().setTextScale(options.textScale.value_or(1));
  } else if (!demo::openWindow(options.screen, options.fullScreen, options.textScale)) {
    std::fprintf(stderr, "zuvi-demo: there is no display; --offscreen runs without one\n");
    return 2;
  }

  MainLoop::attach();
  int exitCode = 0;
  // Lives as long as the process: its screens may hold on to requests that are under way.
  auto* program = new demo::Demo(options);
  const std::string problem = program->start([&exitCode](int code) {
    exitCode = code;
    MainLoop::stop();
  });
  if (!problem.empty()) {
    std::fprintf(stderr, "zuvi-demo: %s\n", problem.c_str());
    return 2;
  }
  MainLoop::run();
  std::fflush(nullptr);
  std::exit(exitCode); // which also removes a film under way
}
