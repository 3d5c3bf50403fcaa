#include "platform/Dispatch/AssertMainQueue.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace zuvi {

void assertMainQueue(const char* what) {
  if (DispatchQueue::main().isCurrent()) return;
  static std::atomic<bool> told = false;
  if (!told.exchange(true))
    std::fprintf(stderr,
                 "%s was touched on another thread than the main one. "
                 "Do it within DispatchQueue::main().async.\n",
                 what);
#ifndef NDEBUG
  std::abort();
#endif
}

} // namespace zuvi
