#include "sandbox/core/File.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zuvi::sandbox {
namespace {

Error failure(const char* what, const std::filesystem::path& path) {
  return {"cannot " + std::string(what) + " " + path.string() + ": " + std::strerror(errno)};
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

} // namespace

Result<std::string> readFile(const std::filesystem::path& path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return failure("read", path);
  std::string bytes;
  char buffer[16384];
  while (true) {
    const auto count = read(descriptor, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) {
      auto error = failure("read", path);
      close(descriptor);
      if (count < 0) return error;
      return bytes;
    }
    bytes.append(buffer, static_cast<std::size_t>(count));
  }
}

Result<Done> writeFile(const std::filesystem::path& path, std::string_view bytes,
                       FileAccess access) {
  auto beside = path;
  beside += ".new";
  const mode_t mode = access == FileAccess::ownerOnly ? 0600 : 0644;
  unlink(beside.c_str());
  const int descriptor = open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  if (descriptor < 0) return failure("write", path);
  const bool written = writeAll(descriptor, bytes);
  if (close(descriptor) != 0 || !written || rename(beside.c_str(), path.c_str()) != 0) {
    auto error = failure("write", path);
    unlink(beside.c_str());
    return error;
  }
  return Done{};
}

Result<Done> makeFolder(const std::filesystem::path& path) {
  std::error_code error;
  if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), error);
  if (mkdir(path.c_str(), 0700) != 0 && errno != EEXIST && !error)
    error.assign(errno, std::generic_category());
  if (!error && std::filesystem::is_directory(path, error)) return Done{};
  return Error{"cannot make the folder " + path.string() + ": " +
               (error ? error.message() : "a file stands there")};
}

} // namespace zuvi::sandbox
