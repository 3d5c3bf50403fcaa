#include "sandbox/core/Options.h"

#include <csignal>
#include <exception>
#include <iostream>

namespace {

using namespace zuvi::sandbox;

enum ExitStatus { succeeded = 0, failed = 1, misused = 2 };

int complain(const Error& error, ExitStatus status) {
  std::cerr << "zuvi-sandbox: " << error.message << std::endl;
  return status;
}

int serve(ServerOptions options) {
  // Blocked before any thread is made, so that each inherits it and only this one waits.
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::signal(SIGPIPE, SIG_IGN);

  options.log = [](const std::string& line) { std::cout << line << std::endl; };
  const auto server = Server::start(std::move(options));
  if (!server) return complain(server.error(), failed);
  std::cout << "zuvi-sandbox: listening on " << (*server)->address() << "/";
  if (const auto authority = (*server)->certificateAuthority(); !authority.empty())
    std::cout << " (certificate authority: " << authority.string() << ")";
  std::cout << std::endl;

  int received = 0;
  sigwait(&signals, &received);
  (*server)->stop();
  return succeeded;
}

int run(const std::vector<std::string>& arguments) {
  auto options = readOptions(arguments);
  if (!options) return complain(options.error(), misused);
  switch (options->task) {
  case Task::help:
    std::cout << usage();
    return succeeded;
  case Task::snapshot: {
    const auto written = writeSnapshot(options->snapshot);
    return written ? succeeded : complain(written.error(), failed);
  }
  case Task::serve:
    break;
  }
  return serve(std::move(options->server));
}

} // namespace

int main(int count, char** arguments) {
  try {
    return run({arguments + 1, arguments + count});
  } catch (const std::exception& problem) {
    return complain({problem.what()}, failed);
  }
}
