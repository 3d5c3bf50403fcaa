#pragma once

#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace zuvi::test {

/// A program that runs until this object goes, or the test's process does.
class ChildProcess {
public:
  /// What the program prints goes to the file `log`.
  ChildProcess(std::vector<std::string> command, const std::string& log) {
    std::vector<char*> arguments;
    for (auto& part : command)
      arguments.push_back(part.data());
    arguments.push_back(nullptr);
    id_ = ::fork();
    if (id_ != 0) return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int file = ::open(log.c_str(), O_CREAT | O_APPEND | O_WRONLY, 0600);
    ::dup2(file, STDOUT_FILENO);
    ::dup2(file, STDERR_FILENO);
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

private:
  pid_t id_ = -1;
};

} // namespace zuvi::test
