#pragma once

namespace zuvi {

/// Whether screens have light or dark colours.
enum class UIUserInterfaceStyle {
  Unspecified, ///< what the desktop asks for
  Light,       ///< dark text on light grounds
  Dark,        ///< light text on dark grounds
};

} // namespace zuvi
