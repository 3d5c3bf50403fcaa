#pragma once

#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include <ZuviSDK/Verification.h>
#include "platform/UIKit/ScreenWindow.h"

#include <memory>

namespace zuvi {

/// A run that `verify` started: the empty screen that the flow is presented over. It lives until
/// the run ends and its window closes.
class VerificationRun final : public UIViewController {
public:
  /// Brings the window of the run to the front. False: there is no run.
  static bool bringForward();
  /// Opens a window, unless something shows the screen already, and presents the flow. `completion`
  /// as `verify` has it.
  static void start(GtkWindow* parent, ScreenWindow::Shape shape,
                    VerificationCompletion completion);

  void presentedWasDismissed() override;

private:
  void open(GtkWindow* parent, ScreenWindow::Shape shape);
  void closeRequested();
  /// Closes the window in a later turn, when no call of the flow is running.
  void end();

  std::unique_ptr<ScreenWindow> window_; ///< null: the host shows the screen
  std::shared_ptr<UIWindow> surface_;
  std::weak_ptr<UIView> hostsKeyWindow_; ///< becomes key again after the run
  VerificationCompletion completion_;
  Verification verification_;
  bool told_ = false; ///< the delegate
  bool ends_ = false;
};

} // namespace zuvi
