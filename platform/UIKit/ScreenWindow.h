#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/UIKit/ToolkitTypes.h>

#include <functional>
#include <string>

namespace zuvi {

/// A window of the desktop that shows `UIScreen::main()` and nothing else. Main queue only.
class ScreenWindow {
public:
  struct Shape {
    CGSize size{375, 812};   ///< in points; less where the display is lower
    bool fullScreen = false; ///< fills the display, as it does on every small one
  };

  /// False: there is no display, or the toolkit was not initialized.
  static bool canOpen();

  /// Opens it over `parent`, with which it is also destroyed; null: it stands alone.
  ScreenWindow(GtkWindow* parent, const std::string& title, Shape shape);
  /// Closes it.
  ~ScreenWindow();
  ScreenWindow(const ScreenWindow&) = delete;
  ScreenWindow& operator=(const ScreenWindow&) = delete;

  /// Brings it to the front.
  void present();

  /// The person asked to close it; it stays open.
  std::function<void()> onCloseRequest;
  /// It was destroyed, e.g. with its parent; the screen is shown by nothing.
  std::function<void()> onDestroy;

private:
  void takeScreen();

  GtkWindow* window_;
  GtkWidget* screen_;
};

} // namespace zuvi
