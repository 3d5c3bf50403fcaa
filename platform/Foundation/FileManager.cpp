#include "platform/Foundation/FileManager.h"

#include "platform/Foundation/ProcessInfo.h"
#include "platform/Foundation/SizeSignalBlocked.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zuvi {

namespace {

constexpr std::size_t largestFile = std::size_t{256} << 20; // bytes

std::mutex documentsMutex;
std::optional<std::optional<std::string>> replacedDocuments;

class Descriptor {
public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  explicit operator bool() const { return number_ >= 0; }
  int number() const { return number_; }

private:
  int number_;
};

bool isDirectory(const std::string& path) {
  struct stat status = {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// What is missing on the way is made for the user alone.
bool makePrivateDirectory(const std::string& path) {
  for (auto end = path.find('/', 1);; end = path.find('/', end + 1)) {
    const std::string part = path.substr(0, end);
    if (::mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) break;
    if (end == std::string::npos) break;
  }
  return isDirectory(path);
}

std::string folderOf(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, std::max<std::size_t>(slash, 1));
}

bool makeFolderOf(const std::string& path) {
  return makePrivateDirectory(folderOf(path));
}

/// Where the documents may lie, the usual place first.
std::vector<std::string> documentsPlaces() {
  std::vector<std::string> places;
  const auto home = ProcessInfo::registeredHome();
  for (const auto& data : {ProcessInfo::userDataFolder(), ProcessInfo::userRuntimeFolder(),
                           home ? std::optional(*home + "/.local/share") : std::nullopt})
    if (data) places.push_back(*data + '/' + ProcessInfo::processName() + "/Documents");
  return places;
}

bool canHoldDocuments(const std::string& folder) {
  // On a disk that can't be written the mode can't be set either.
  return makePrivateDirectory(folder) && ::chmod(folder.c_str(), 0700) == 0;
}

bool writeAll(int descriptor, std::string_view bytes) {
  const SizeSignalBlocked blocked;
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

} // namespace

std::optional<std::string> FileManager::documentsDirectory() {
  const std::lock_guard lock(documentsMutex);
  if (replacedDocuments) {
    const auto& folder = *replacedDocuments;
    return folder && makePrivateDirectory(*folder) ? folder : std::nullopt;
  }
  const auto places = documentsPlaces();
  const auto found = std::find_if(places.begin(), places.end(), canHoldDocuments);
  const bool usual = ProcessInfo::userDataFolder() && found == places.begin();
  auto folder = found == places.end() ? std::nullopt : std::optional(*found);
  if (usual) return folder;
  static std::optional<std::optional<std::string>> told;
  if (told != folder) {
    told = folder;
    std::fprintf(stderr, "The user's data folder can't be written. Films are recorded %s.\n",
                 folder ? ("in " + *folder).c_str() : "nowhere: there is no other folder either");
  }
  return folder;
}

std::vector<std::string> FileManager::documentsDirectories() {
  const std::lock_guard lock(documentsMutex);
  if (!replacedDocuments) return documentsPlaces();
  return *replacedDocuments ? std::vector{**replacedDocuments} : std::vector<std::string>();
}

void FileManager::setDocumentsDirectory(std::optional<std::string> folder) {
  const std::lock_guard lock(documentsMutex);
  replacedDocuments = std::move(folder);
}

std::optional<Data> FileManager::contents(const std::string& path) {
  // Opening a pipe must not wait for its writer.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status = {};
  if (!file || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode))
    return std::nullopt;
  const auto size = static_cast<std::size_t>(status.st_size);
  if (size > largestFile) return std::nullopt;
  const std::shared_ptr<char[]> bytes(new (std::nothrow) char[size]);
  if (!bytes) return std::nullopt;
  std::size_t length = 0;
  while (length < size) {
    const ssize_t count = ::read(file.number(), bytes.get() + length, size - length);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
  }
  return Data(bytes, bytes.get(), length);
}

bool FileManager::removeItem(const std::string& path) {
  return ::unlink(path.c_str()) == 0;
}

FileManager::FolderLock::FolderLock(const std::string& file)
    : folder_(makeFolderOf(file) ? ::open(folderOf(file).c_str(), O_RDONLY | O_CLOEXEC) : -1) {
  // Others hold it for milliseconds; one that was stopped meanwhile must not stop everybody.
  constexpr int mostAttempts = 100;
  for (int i = 0; folder_ >= 0 && ::flock(folder_, LOCK_EX | LOCK_NB) != 0 && i < mostAttempts; i++)
    ::usleep(10'000);
}

FileManager::FolderLock::~FolderLock() {
  if (folder_ >= 0) ::close(folder_);
}

bool FileManager::writeAtomically(const std::string& path, std::string_view bytes) {
  makeFolderOf(path);
  std::string temporary = path + ".XXXXXX";
  const Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
  if (!file) return false;
  // Without the flush the new name could reach the disk before the bytes do.
  if (writeAll(file.number(), bytes) && ::fsync(file.number()) == 0 &&
      std::rename(temporary.c_str(), path.c_str()) == 0)
    return true;
  ::unlink(temporary.c_str());
  return false;
}

} // namespace zuvi
