#pragma once

#include <ZuviSDK/Foundation/Data.h>
#include <ZuviSDK/UIKit/UIButton.h>
#include "kit/UI/ViewControllers/ZVScreen.h"

#include <optional>

namespace zuvi {

/// The review: asks the person to send the film or to record another.
class ZVLivenessVerifyViewController final : public ZVScreen {
public:
  static constexpr const char* name = "ZVLivenessVerifyViewController";
  ZVLivenessVerifyViewController() : ZVScreen(name) {}

  std::weak_ptr<UILabel> titleLabel;
  std::weak_ptr<UIButton> retakeButton;
  std::optional<Data> video; ///< the recorder sets it

  void declareNib(NibDeclaration& nib) override;
  void viewDidLoad() override;
  void viewWillAppear(bool animated) override;

private:
  std::string announcement() const override;
  void confirm();
  void retakeButtonTap();
};

} // namespace zuvi
