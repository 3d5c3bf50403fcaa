#pragma once

#include <ZuviSDK/Foundation/Error.h>

#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace zuvi {

/// The file of one film, and the only one who removes it. It has no name while it is written, so
/// whatever ends the process also ends the file. Where the file system has none without a name it
/// gets a hidden one, which is removed later once its writer is gone. Any thread.
class FilmFile {
public:
  /// Nothing is made yet.
  explicit FilmFile(std::string path) : path_(std::move(path)) {}
  /// What was not kept is gone.
  ~FilmFile();
  FilmFile(const FilmFile&) = delete;
  FilmFile& operator=(const FilmFile&) = delete;

  /// Removes the hidden films in a folder whose writers are gone.
  static void removeAbandoned(const std::string& folder);

  const std::string& path() const { return path_; } ///< what the film is called once it is whole

  /// Makes the file, which nobody else can read, or empties it when it was made before.
  std::optional<Error> open();
  /// To write to; negative before `open`.
  int descriptor() const;
  /// Nobody is to get the film: its room on the disk is free from now on.
  void discard();
  /// Gives the whole film its name, in place of a file that is there; from then on it is its
  /// reader's. An error, also of a folder that has gone; without effect on a film that was given
  /// up.
  std::optional<Error> keep();

private:
  std::optional<Error> make();

  const std::string path_;
  mutable std::mutex mutex_;
  int descriptor_ = -1;
  std::string hidden_; ///< the file's name while it is written; mostly empty
  bool discarded_ = false;
};

} // namespace zuvi
