#pragma once

#include <ZuviSDK/UIKit/UIButton.h>
#include "kit/UI/ViewControllers/ZVScreen.h"

namespace zuvi {

class ZVCancelAlertDelegate {
public:
  virtual ~ZVCancelAlertDelegate() = default;
  /// The person wants to leave; the alert is on its way out.
  virtual void cancelAction() = 0;
};

/// Asks whether the person really wants to leave. The step below goes on meanwhile.
class ZVCancelAlertViewController final : public ZVScreen {
public:
  static constexpr const char* name = "ZVCancelAlertViewController";
  ZVCancelAlertViewController() : ZVScreen(name) {}

  std::weak_ptr<ZVCancelAlertDelegate> delegate;
  std::weak_ptr<UIView> popUpView;
  std::weak_ptr<UILabel> titleLabel;
  std::weak_ptr<UIButton> continueButton, cancelButton;
  std::weak_ptr<UILabel> continueLabel, cancelLabel;

  void declareNib(NibDeclaration& nib) override;
  void viewDidLoad() override;
  UIView* preferredFocusView() override { return continueButton.lock().get(); }
  /// As the button that stays.
  bool accessibilityPerformEscape() override;

private:
  std::string announcement() const override;
  void continueButtonTap();
  void cancelButtonTap();
};

} // namespace zuvi
