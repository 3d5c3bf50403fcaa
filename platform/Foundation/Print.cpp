#include <ZuviSDK/Foundation/Print.h>

#include <cstdio>
#include <mutex>
#include <utility>

namespace zuvi {

namespace {
std::mutex mutex;
std::function<void(const std::string&)> currentListener;
} // namespace

void print(const std::string& line) {
  std::function<void(const std::string&)> listener;
  {
    const std::lock_guard lock(mutex);
    const std::string whole = line + '\n';
    std::fwrite(whole.data(), 1, whole.size(), stdout);
    std::fflush(stdout);
    listener = currentListener;
  }
  if (listener) listener(line);
}

void setPrintListener(std::function<void(const std::string&)> listener) {
  const std::lock_guard lock(mutex);
  currentListener.swap(listener); // the old one dies after the lock is gone
}

} // namespace zuvi
