#pragma once

#include <chrono>
#include <csignal>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zuvi::test {

/// Waits in real time until something holds; false when it takes longer than a minute, or once
/// there is nothing left that could bring it about.
inline bool comesToHold(
    const std::function<bool()>& holds, const std::function<bool()>& goesOn = [] { return true; }) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::minutes(1);
  while (!holds() && goesOn() && Clock::now() < end)
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  return holds();
}

/// A program that runs until this object goes, or the test's process does.
class ChildProcess {
public:
  /// What the program prints goes to the file `log`, if there is one.
  explicit ChildProcess(std::vector<std::string> command, const std::string& log = {}) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (auto& part : command)
      arguments.push_back(part.data());
    arguments.push_back(nullptr);
    id_ = ::fork();
    if (id_ != 0) return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (!log.empty()) {
      const int file = ::open(log.c_str(), O_CREAT | O_APPEND | O_WRONLY, 0600);
      ::dup2(file, STDOUT_FILENO);
      ::dup2(file, STDERR_FILENO);
    }
    ::execvp(arguments[0], arguments.data());
    ::_exit(127);
  }
  ~ChildProcess() { end(SIGKILL); }
  ChildProcess(ChildProcess&& other) noexcept : id_(std::exchange(other.id_, -1)) {}
  ChildProcess& operator=(ChildProcess&& other) noexcept {
    std::swap(id_, other.id_);
    return *this;
  }

  void end(int signal) {
    if (id_ <= 0) return;
    ::kill(id_, signal);
    ::waitpid(id_, nullptr, 0);
    id_ = -1;
  }
  /// The program's exit status once it has ended by itself; -1 when a signal ended it.
  int wait() {
    int status = 0;
    ::waitpid(std::exchange(id_, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  bool isRunning() const {
    siginfo_t info{};
    return id_ > 0 && ::waitid(P_PID, id_t(id_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0;
  }

  pid_t id() const { return id_; }

private:
  pid_t id_ = -1;
};

} // namespace zuvi::test
