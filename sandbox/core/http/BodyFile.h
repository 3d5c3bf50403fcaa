#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

namespace zuvi::sandbox {

/// A body on its way to the disk: a file without a name, which goes with this object.
class BodyFile {
public:
  /// Null when the folder can't be written.
  static std::shared_ptr<BodyFile> make(const std::filesystem::path& folder);
  ~BodyFile();
  BodyFile(const BodyFile&) = delete;
  BodyFile& operator=(const BodyFile&) = delete;

  /// False when the disk is full.
  bool add(std::string_view bytes);
  /// All that was added, as long as this object lives; nothing may be added afterwards. Empty when
  /// it can't be read.
  std::string_view bytes();

private:
  explicit BodyFile(int descriptor) : descriptor_(descriptor) {}

  int descriptor_;
  std::size_t size_ = 0;
  void* mapped_ = nullptr;
};

} // namespace zuvi::sandbox
