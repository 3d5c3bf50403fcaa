#pragma once

#include <string>
#include <string_view>

namespace zuvi::test {

/// An empty folder that goes away, with all in it, at the end of the test.
class TemporaryFolder {
public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string path(const std::string& name) const { return path_ + '/' + name; }
  /// Writes a file in the folder and returns its path.
  std::string write(const std::string& name, std::string_view bytes) const;
  /// The bytes of a file; empty when there is none.
  static std::string read(const std::string& path);

private:
  std::string path_;
};

} // namespace zuvi::test
