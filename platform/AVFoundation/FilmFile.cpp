#include "platform/AVFoundation/FilmFile.h"

#include "platform/AVFoundation/AVError.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace zuvi {

namespace {

constexpr std::string_view hiddenName = ".zuvi-film-";

Error failure() {
  return {AVFoundationErrorDomain, AVErrorDiskFull,
          "The film cannot be written: " + std::string(strerror(errno))};
}

std::string folderOf(const std::string& path) {
  const auto folder = std::filesystem::path(path).parent_path().string();
  return folder.empty() ? "." : folder;
}

/// The number, kept in `name` with the hidden name that was made; negative when there is none.
int makeHidden(const std::string& folder, std::string& name) {
  for (;;) {
    name = folder + '/' + std::string(hiddenName) + "XXXXXX";
    const int file = ::mkostemp(name.data(), O_CLOEXEC);
    struct stat status = {};
    if (file < 0) return file;
    ::flock(file, LOCK_EX | LOCK_NB);
    // Somebody may have taken it for abandoned before it was locked.
    if (::fstat(file, &status) == 0 && status.st_nlink > 0) return file;
    ::close(file);
  }
}

/// A hidden name for a file that has none.
bool nameHidden(int descriptor, const std::string& folder, std::string& name) {
  const std::string file = "/proc/self/fd/" + std::to_string(descriptor);
  for (unsigned attempt = 0;; attempt++) {
    name = folder + '/' + std::string(hiddenName) + std::to_string(::getpid()) + '-' +
           std::to_string(descriptor) + '-' + std::to_string(attempt);
    if (::linkat(AT_FDCWD, file.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0)
      return true;
    if (errno != EEXIST) return false;
  }
}

} // namespace

FilmFile::~FilmFile() {
  discard();
  if (descriptor_ >= 0) ::close(descriptor_);
}

void FilmFile::removeAbandoned(const std::string& folder) {
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string path = entry->path().string();
    if (!entry->path().filename().string().starts_with(hiddenName)) continue;
    const int file = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file < 0) continue;
    // A writer locks its file as long as it lives.
    if (::flock(file, LOCK_EX | LOCK_NB) == 0) ::unlink(path.c_str());
    ::close(file);
  }
}

std::optional<Error> FilmFile::open() {
  const std::lock_guard lock(mutex_);
  if (descriptor_ < 0) return make();
  if (::ftruncate(descriptor_, 0) != 0 || ::lseek(descriptor_, 0, SEEK_SET) != 0) return failure();
  return std::nullopt;
}

std::optional<Error> FilmFile::make() {
  if (path_.empty()) {
    errno = ENOENT;
    return failure();
  }
  const std::string folder = folderOf(path_);
  removeAbandoned(folder);
  descriptor_ = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  // What a kernel or a file system without such files says.
  if (descriptor_ < 0 && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL))
    descriptor_ = makeHidden(folder, hidden_);
  if (descriptor_ < 0) return failure();
  ::flock(descriptor_, LOCK_EX | LOCK_NB);
  return std::nullopt;
}

int FilmFile::descriptor() const {
  const std::lock_guard lock(mutex_);
  return descriptor_;
}

void FilmFile::discard() {
  const std::lock_guard lock(mutex_);
  if (std::exchange(discarded_, true) || descriptor_ < 0) return;
  if (!hidden_.empty()) ::unlink(hidden_.c_str());
  // Something may hold the descriptor, and write, for as long as its disk hangs.
  if (::ftruncate(descriptor_, 0) != 0) return;
}

std::optional<Error> FilmFile::keep() {
  const std::lock_guard lock(mutex_);
  if (discarded_ || descriptor_ < 0) return std::nullopt;
  discarded_ = true; // from here on there is nothing to give up
  if (hidden_.empty() && !nameHidden(descriptor_, folderOf(path_), hidden_)) return failure();
  if (std::rename(hidden_.c_str(), path_.c_str()) == 0) return std::nullopt;
  Error error = failure();
  ::unlink(hidden_.c_str());
  return error;
}

} // namespace zuvi
