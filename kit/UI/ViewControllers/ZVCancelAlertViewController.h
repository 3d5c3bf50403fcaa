#pragma once

#include <ZuviSDK/UIKit/UIButton.h>
#include "kit/UI/ViewControllers/ZVScreen.h"

namespace zuvi {

class ZVCancelAlertDelegate {
public:
  virtual ~ZVCancelAlertDelegate() = default;
  /// The person wants to leave; the alert is being dismissed.
  virtual void cancelAction() = 0;
};

/// The leave alert: asks whether the person really wants to leave. The step below keeps running.
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
  /// Does the same as the continue button.
  bool accessibilityPerformEscape() override;

  /// The person leaves.
  void cancelButtonTap();

private:
  std::string announcement() const override;
  void continueButtonTap();
};

} // namespace zuvi
