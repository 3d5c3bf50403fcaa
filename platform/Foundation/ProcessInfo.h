#pragma once

#include <optional>
#include <string>

namespace zuvi {

/// The running program and the folders that its user has set aside for programs.
class ProcessInfo {
public:
  /// The path of the executable; empty when the system does not tell.
  static std::string executablePath();
  /// The folder of the library or program that holds the code at `address`, wherever it was started
  /// from; empty when the system does not tell.
  static std::string folderOfCode(const void* address);
  /// The file name of the executable.
  static std::string processName();
  /// The user's folder for settings, and for data; absent when the environment names neither it
  /// nor a home.
  static std::optional<std::string> userConfigurationFolder();
  static std::optional<std::string> userDataFolder();
  /// The user's folder for what lasts no longer than the session; absent when the environment does
  /// not name it.
  static std::optional<std::string> userRuntimeFolder();
  /// The user's home in the system's list of users, whatever the environment says.
  static std::optional<std::string> registeredHome();
  /// Gives back to the system what the program has freed. The allocator keeps it otherwise, for
  /// each thread that once had a large block; costs milliseconds, so not for the main thread.
  static void returnFreedMemory();
};

} // namespace zuvi
