#include "platform/Foundation/ProcessInfo.h"

#include <dlfcn.h>
#include <link.h>
#include <malloc.h>
#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace zuvi {

namespace {

// A relative path would depend on where the program was started.
std::optional<std::string> absolutePath(const char* variable) {
  const char* value = std::getenv(variable);
  // Nothing of a person's belongs below the root itself.
  return value && value[0] == '/' && value[1] ? std::optional<std::string>(value) : std::nullopt;
}

std::optional<std::string> userFolder(const char* variable, const char* belowHome) {
  if (auto folder = absolutePath(variable)) return folder;
  if (const auto home = absolutePath("HOME")) return *home + belowHome;
  return std::nullopt;
}

} // namespace

void ProcessInfo::returnFreedMemory() {
#ifdef __GLIBC__
  malloc_trim(0);
#endif
}

std::string ProcessInfo::executablePath() {
  std::error_code error;
  std::string path = std::filesystem::read_symlink("/proc/self/exe", error).string();
  // What the system adds once another file, such as a newer version, has taken the program's place.
  constexpr std::string_view mark = " (deleted)";
  if (path.ends_with(mark) && !std::filesystem::exists(path, error))
    path.resize(path.size() - mark.size());
  return path;
}

std::string ProcessInfo::folderOfCode(const void* address) {
  Dl_info info{};
  void* found = nullptr;
  if (!dladdr1(address, &info, &found, RTLD_DL_LINKMAP) || !found) return {};
  // The program itself has no name here; what it was called may be anything.
  const char* library = static_cast<const link_map*>(found)->l_name;
  std::error_code error;
  const auto path = std::filesystem::canonical(
      library && *library ? std::string(library) : executablePath(), error);
  return path.parent_path().string();
}

std::string ProcessInfo::processName() {
  return std::filesystem::path(executablePath()).filename().string();
}

std::optional<std::string> ProcessInfo::userConfigurationFolder() {
  return userFolder("XDG_CONFIG_HOME", "/.config");
}

std::optional<std::string> ProcessInfo::userDataFolder() {
  return userFolder("XDG_DATA_HOME", "/.local/share");
}

std::optional<std::string> ProcessInfo::userRuntimeFolder() {
  return absolutePath("XDG_RUNTIME_DIR");
}

std::optional<std::string> ProcessInfo::registeredHome() {
  std::array<char, 16384> room{};
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &entry, room.data(), room.size(), &found) != 0 || !found)
    return std::nullopt;
  const std::string home = found->pw_dir;
  return home.size() > 1 && home[0] == '/' ? std::optional(home) : std::nullopt;
}

} // namespace zuvi
