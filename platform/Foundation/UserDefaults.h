#pragma once

#include <ZuviSDK/Foundation/Value.h>

#include <memory>
#include <string>

namespace zuvi {

/// Small values that outlive the process: one JSON file, replaced atomically. A damaged file reads
/// as empty and is kept aside under another name; one that can't be read stays as it is. What other
/// processes write to the file meanwhile stays too, and is seen by the next one that starts. Main
/// queue only.
class UserDefaults {
public:
  /// The file of the running program, below the user's configuration folder.
  static UserDefaults& standard();
  /// The file of that path, read at once; one that does not exist is made when something is set.
  explicit UserDefaults(std::string path);
  /// What was set is on the disk, if that can be written.
  ~UserDefaults();
  UserDefaults(const UserDefaults&) = delete;
  UserDefaults& operator=(const UserDefaults&) = delete;

  /// Null when nothing is stored under the key. Holds until the key is set.
  const Value& value(const std::string& key) const;
  /// Null removes the key. A value that JSON cannot hold is not stored. The file follows soon, on
  /// another thread, with all that was set until then.
  void set(const std::string& key, const Value& value);
  /// Adds to a stored list, at a cost that does not grow with it. False when there is none.
  bool append(const std::string& key, const Value& element);
  /// Returns when all that was set is on the disk, or can't be written now: it is tried again
  /// later.
  void synchronize();

private:
  struct File;
  void saveSoon();
  std::shared_ptr<File> file_;
};

} // namespace zuvi
