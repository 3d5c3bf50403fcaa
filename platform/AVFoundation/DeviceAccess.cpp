#include "platform/AVFoundation/DeviceAccess.h"

#include <filesystem>
#include <unistd.h>

namespace zuvi {

bool mayOpenDevice(const std::string& path) {
  return ::access(path.c_str(), R_OK | W_OK) == 0;
}

AVAuthorizationStatus deviceAuthorization(const std::string& folder) {
  std::error_code error;
  bool any = false;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (!entry->path().filename().string().starts_with("video")) continue;
    if (mayOpenDevice(entry->path().string())) return AVAuthorizationStatus::Authorized;
    any = true;
  }
  return any ? AVAuthorizationStatus::Denied : AVAuthorizationStatus::Authorized;
}

} // namespace zuvi
