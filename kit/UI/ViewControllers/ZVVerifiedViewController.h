#pragma once

#include "kit/UI/ViewControllers/ZVScreen.h"

namespace zuvi {

/// The finish, the last step of a successful run.
class ZVVerifiedViewController final : public ZVScreen {
public:
  static constexpr const char* name = "ZVVerifiedViewController";
  ZVVerifiedViewController() : ZVScreen(name) {}

  void viewWillAppear(bool animated) override;

private:
  void finish();
};

} // namespace zuvi
