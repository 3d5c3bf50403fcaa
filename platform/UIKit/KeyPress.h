#pragma once

#include <string>

namespace zuvi {

/// A key going down. `name` is "Tab", "Return", "space", "Escape", "BackSpace", "Left" and so on;
/// `text` is what it types, empty for none.
struct KeyPress {
  std::string name;
  std::string text;
  bool shift = false;
};

} // namespace zuvi
