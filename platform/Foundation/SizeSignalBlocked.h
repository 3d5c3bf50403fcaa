#pragma once

#include <csignal>
#include <ctime>

namespace zuvi {

/// While it lives, a write of this thread beyond the limit on the size of files fails; the signal
/// that comes with it would end the process.
class SizeSignalBlocked {
public:
  SizeSignalBlocked() {
    sigemptyset(&signal_);
    sigaddset(&signal_, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &signal_, &before_);
  }
  ~SizeSignalBlocked() {
    const timespec now = {};
    if (!sigismember(&before_, SIGXFSZ)) sigtimedwait(&signal_, nullptr, &now);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  SizeSignalBlocked(const SizeSignalBlocked&) = delete;
  SizeSignalBlocked& operator=(const SizeSignalBlocked&) = delete;

private:
  sigset_t signal_, before_;
};

} // namespace zuvi
