#pragma once

#include "platform/UIKit/UIViewController.h"

#include <functional>

namespace zuvi {

class ZVRootViewController;

/// A screen of the flow: its nib lies in the kit's bundle under the name of its class.
class ZVScreen : public UIViewController {
protected:
  explicit ZVScreen(const char* name);

  /// The frame that the screen stands in, whose chrome it writes.
  static ZVRootViewController& shell();
  /// Gives the frame's bottom button to this screen, for as long as the screen is on show.
  void setBottomButtonAction(std::function<void()> action);
};

} // namespace zuvi
