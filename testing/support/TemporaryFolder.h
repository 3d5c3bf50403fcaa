#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace zuvi::test {

/// An empty folder that goes away, with all in it, at the end of the test.
class TemporaryFolder {
public:
  TemporaryFolder() {
    if (!::mkdtemp(path_.data())) throw std::runtime_error("no temporary folder");
  }
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string path(const std::string& name) const { return path_ + '/' + name; }
  /// Writes a file in the folder and returns its path.
  std::string write(const std::string& name, std::string_view bytes) const {
    std::ofstream(path(name), std::ios::binary).write(bytes.data(), std::ssize(bytes));
    return path(name);
  }
  /// The bytes of a file; empty when there is none.
  static std::string read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

private:
  std::string path_ = std::filesystem::temp_directory_path() / "zuvi-test-XXXXXX";
};

} // namespace zuvi::test
