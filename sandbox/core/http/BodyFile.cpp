#include "sandbox/core/http/BodyFile.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace zuvi::sandbox {

std::shared_ptr<BodyFile> BodyFile::make(const std::filesystem::path& folder) {
  int descriptor = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (descriptor < 0) { // not every file system has files without a name
    std::string name = folder / "body-XXXXXX";
    descriptor = mkostemp(name.data(), O_CLOEXEC);
    if (descriptor >= 0) unlink(name.c_str());
  }
  return descriptor < 0 ? nullptr : std::shared_ptr<BodyFile>(new BodyFile(descriptor));
}

BodyFile::~BodyFile() {
  if (mapped_ != nullptr) munmap(mapped_, size_);
  close(descriptor_);
}

bool BodyFile::add(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = write(descriptor_, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    size_ += static_cast<std::size_t>(count);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

std::string_view BodyFile::bytes() {
  if (mapped_ == nullptr && size_ > 0) {
    void* mapped = mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, descriptor_, 0);
    if (mapped == MAP_FAILED) return {};
    mapped_ = mapped;
  }
  return {static_cast<const char*>(mapped_), mapped_ == nullptr ? 0 : size_};
}

} // namespace zuvi::sandbox
