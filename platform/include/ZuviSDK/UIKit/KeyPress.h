#pragma once

#include <string>

namespace zuvi {

/// A key going down. `name` is "Tab", "Return", "space", "Escape", "BackSpace", "Left" and so on;
/// `text` is what it types, empty for none.
struct KeyPress {
  std::string name;     ///< the key's, as the window system calls it
  std::string text;     ///< UTF-8
  bool shift = false;   ///< whether Shift is held
  bool repeats = false; ///< held since it was told first: it types and moves, but presses nothing

  /// Whether it moves the focus, and whether backwards.
  /// @{
  bool isTab() const { return name == "Tab" || isBackTab(); }
  bool isBackTab() const { return name == "ISO_Left_Tab" || (name == "Tab" && shift); }
  /// @}
};

} // namespace zuvi
