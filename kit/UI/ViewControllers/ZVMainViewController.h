#pragma once

#include <ZuviSDK/UIKit/UIImageView.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include "kit/UI/ViewControllers/ZVScreen.h"

namespace zuvi {

/// The start, the first step of a run: says what will come.
class ZVMainViewController final : public ZVScreen {
public:
  static constexpr const char* name = "ZVMainViewController";
  ZVMainViewController() : ZVScreen(name) {}

  std::weak_ptr<UIImageView> imageView;
  std::weak_ptr<UILabel> titleLabel, step1Label, step2Label, infolabel;

  void declareNib(NibDeclaration& nib) override;
  void viewWillAppear(bool animated) override;

private:
  void start();
};

} // namespace zuvi
