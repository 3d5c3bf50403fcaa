#pragma once

#include "platform/UIKit/UIViewController.h"

namespace zuvi {

class ZVRootViewController;

/// A screen of the flow: its nib lies in the kit's bundle under the name of its class.
class ZVScreen : public UIViewController {
protected:
  explicit ZVScreen(const char* name);

  /// The frame that the screen stands in, whose chrome it writes.
  static ZVRootViewController& shell();
};

} // namespace zuvi
