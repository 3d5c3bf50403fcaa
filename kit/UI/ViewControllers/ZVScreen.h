#pragma once

#include <ZuviSDK/UIKit/UIViewController.h>

#include <functional>
#include <string>

namespace zuvi {

class ZVRootViewController;

/// A screen of the flow. Its nib is in the kit's bundle and has the name of its class.
class ZVScreen : public UIViewController {
public:
  void viewDidAppear(bool animated) override;

protected:
  explicit ZVScreen(const char* name);

  /// The text that a screen reader speaks when the screen has appeared; by default the shell's
  /// title and description. Empty: nothing.
  virtual std::string announcement() const;
  /// The shell of the current run.
  static ZVRootViewController& shell();
  /// Sets the action of the shell's bottom button. It runs only while this screen is visible.
  void setBottomButtonAction(std::function<void()> action);
};

} // namespace zuvi
