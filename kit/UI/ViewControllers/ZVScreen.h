#pragma once

#include <ZuviSDK/UIKit/UIViewController.h>

#include <functional>
#include <string>

namespace zuvi {

class ZVRootViewController;

/// A screen of the flow: its nib lies in the kit's bundle under the name of its class.
class ZVScreen : public UIViewController {
public:
  void viewDidAppear(bool animated) override;

protected:
  explicit ZVScreen(const char* name);

  /// What people who don't see the screen are told once it is there: by itself the title and the
  /// description that a step gave the frame. Empty: nothing.
  virtual std::string announcement() const;
  /// The frame that the screen stands in, whose chrome it writes.
  static ZVRootViewController& shell();
  /// Gives the frame's bottom button to this screen, for as long as the screen is on show.
  void setBottomButtonAction(std::function<void()> action);
};

} // namespace zuvi
