#pragma once

#include "platform/ImageIO/ImageFile.h"
#include "tests/UIKit/Pixels.h"
#include "tests/desktop/PointerWayland.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace zuvi::test {

/// A real desktop without a display: sway, which draws into memory. Its outputs, "HEADLESS-1" and
/// so on, stand side by side; a window without a border fills the one it opens on.
class Compositor {
public:
  explicit Compositor(CGSize output, int outputs = 1);

  bool isThere() const { return ready_; }
  /// For programs' XDG_RUNTIME_DIR; the browser engine's sandbox leaves out displays of other
  /// folders.
  std::string runtimeFolder() const { return folder_.path(); }
  static constexpr const char* display = "wayland-1"; ///< for their WAYLAND_DISPLAY
  Pointer& pointer() { return *pointer_; }
  /// Runs commands in sway's own words.
  void run(const std::string& commands) const;
  /// What the first output shows, in its pixels.
  Pixels picture() const;
  /// Types into the window with the focus.
  void type(const std::string& arguments) const;

private:
  int system(const std::string& command) const;

  TemporaryFolder folder_;
  std::optional<ChildProcess> process_;
  bool ready_ = false;
  std::optional<Pointer> pointer_;
};

} // namespace zuvi::test
