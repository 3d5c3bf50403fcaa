#pragma once

#include "platform/Foundation/Value.h"

#include <string>

namespace zuvi {

/// Small values that outlive the process: one JSON file, replaced atomically at each write. A
/// damaged file reads as empty and is kept aside under another name. Main queue only.
class UserDefaults {
public:
  /// The file of the running program, below the user's configuration folder.
  static UserDefaults& standard();
  explicit UserDefaults(std::string path);

  /// Null when nothing is stored under the key.
  Value value(const std::string& key) const;
  /// Null removes the key. A value that JSON cannot hold is not stored.
  void set(const std::string& key, const Value& value);

private:
  void save() const;

  std::string path_;
  Value::Dictionary values_;
};

} // namespace zuvi
