#pragma once

#include <ZuviSDK/Foundation/Data.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zuvi {

/// Files as the kit needs them. Any thread.
class FileManager {
public:
  /// The folder for the program's documents, made when missing: the user's data folder and the
  /// program's name below it, readable by the user alone. Where that can't be written, a line on
  /// standard error says so, and the same below the session's folder or the registered home serves.
  /// Absent when none of them can be.
  static std::optional<std::string> documentsDirectory();
  /// All folders that may have served so; none of them is made.
  static std::vector<std::string> documentsDirectories();
  /// Replaces the documents folder; an absent folder counts as none.
  static void setDocumentsDirectory(std::optional<std::string> folder);

  /// The whole file, read into memory (not mapped: the file may be removed right away). Absent when
  /// it can't be read or is larger than 256 MiB.
  static std::optional<Data> contents(const std::string& path);
  static bool removeItem(const std::string& path);
  /// Keeps other processes that hold one for a file of the same folder waiting; best effort.
  class FolderLock {
  public:
    explicit FolderLock(const std::string& file);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

  private:
    int folder_;
  };
  /// Writes beside the file and renames, so that a reader sees the old or the new one. A full disk
  /// or a limit on the size of files is a failure like others, not a signal.
  static bool writeAtomically(const std::string& path, std::string_view bytes);
};

} // namespace zuvi
